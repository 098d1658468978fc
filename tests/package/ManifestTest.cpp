// The application manifest as Windows reads it: from resource 1 of type RT_MANIFEST in
// each program, into an activation context that gives the program common controls 6.
#include "base/TextEncoding.h"
#include "tests/package/ManifestReader.h"
#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace lumenor {
namespace {

constexpr const wchar_t* kPrograms[] = {L"lumenor.exe", L"lumenor-cli.exe"};

// The resource's bytes as text; empty when the program has none.
std::string ManifestOf(const std::wstring& program) {
  const HMODULE image =
      LoadLibraryExW(program.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  if (image == nullptr) {
    return {};
  }
  std::string text;
  const HRSRC resource = FindResourceW(image, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));  // RT_MANIFEST
  const HGLOBAL loaded = resource != nullptr ? LoadResource(image, resource) : nullptr;
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes != nullptr) {
    text.assign(static_cast<const char*>(bytes), SizeofResource(image, resource));
  }
  (void)FreeLibrary(image);  // a data-file mapping; nothing to do if it stays
  return text;
}

TEST(ProgramManifest, EachProgramDeclaresStylesRightsSystemsPathsAndScaling) {
  for (const wchar_t* name : kPrograms) {
    SCOPED_TRACE(::testing::Message() << "program " << ToUtf8(name));
    const std::string text = ManifestOf(testing::ProgramBesideTest(name));
    ASSERT_FALSE(text.empty()) << "no manifest resource";
    const std::vector<testing::ManifestTag> tags = testing::ReadManifestTags(text);

    const testing::ManifestTag* controls =
        testing::FindTag(tags, "assemblyIdentity", "name", "Microsoft.Windows.Common-Controls");
    ASSERT_NE(controls, nullptr);
    EXPECT_EQ(controls->Attribute("version"), "6.0.0.0");
    EXPECT_EQ(controls->Attribute("publicKeyToken"), "6595b64144ccf1df");

    const testing::ManifestTag* level = testing::FindTag(tags, "requestedExecutionLevel");
    ASSERT_NE(level, nullptr);
    EXPECT_EQ(level->Attribute("level"), "asInvoker");
    EXPECT_EQ(level->Attribute("uiAccess"), "false");

    std::vector<std::string> systems;
    for (const testing::ManifestTag& tag : tags) {
      if (tag.name == "supportedOS") systems.push_back(tag.Attribute("Id"));
    }
    EXPECT_EQ(systems, (std::vector<std::string>{
                           "{35138b9a-5d96-4fbd-8e2d-a2440225f93a}",  // 7
                           "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",  // 8
                           "{1f676c76-80e1-4239-95bb-83d0f6d0da78}",  // 8.1
                           "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",  // 10 and 11
                       }));

    for (const auto& [setting, value] :
         {std::pair{"longPathAware", "true"}, std::pair{"dpiAware", "false"}, std::pair{"gdiScaling", "true"}}) {
      const testing::ManifestTag* tag = testing::FindTag(tags, setting);
      ASSERT_NE(tag, nullptr) << setting;
      EXPECT_EQ(tag->text, value) << setting;
    }
    // Per-monitor awareness would have Windows stop scaling the pixel-laid skin.
    EXPECT_EQ(testing::FindTag(tags, "dpiAwareness"), nullptr);
  }
}

// The loader, not a text search, decides whether the manifest holds: a malformed one
// keeps a program from starting at all, and a dependency that does not resolve leaves
// the program with the old controls. The test program carries the same manifest, so the
// context that redirects comctl32.dll must be the program's own, not the process's.
TEST(ProgramManifest, LoaderTakesCommonControlsSixFromEachProgramsManifest) {
  for (const wchar_t* name : kPrograms) {
    SCOPED_TRACE(::testing::Message() << "program " << ToUtf8(name));
    const std::wstring program = testing::ProgramBesideTest(name);
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpSource = program.c_str();
    request.lpResourceName = MAKEINTRESOURCEW(1);
    const HANDLE context = CreateActCtxW(&request);
    ASSERT_NE(context, INVALID_HANDLE_VALUE) << "error " << GetLastError();
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie));
    ACTCTX_SECTION_KEYED_DATA found{};
    found.cbSize = sizeof found;
    const bool redirected =
        FindActCtxSectionStringW(FIND_ACTCTX_SECTION_KEY_RETURN_HACTCTX, nullptr,
                                 ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION, L"comctl32.dll", &found) != FALSE;
    const DWORD findError = GetLastError();
    EXPECT_TRUE(DeactivateActCtx(0, cookie));

    const HANDLE redirectingContext = redirected ? found.hActCtx : nullptr;
    if (redirected) ReleaseActCtx(found.hActCtx);
    ReleaseActCtx(context);

    // Only the side-by-side common controls, which are version 6, redirect comctl32.dll.
    ASSERT_TRUE(redirected) << "error " << findError;
    EXPECT_EQ(redirectingContext, context);
  }
}

}  // namespace
}  // namespace lumenor
