// The cookie keep-list: which hosts a listed domain keeps, and how domains are taken in.
#include "browserdb/CookieKeepList.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

TEST(CookieKeepList, ADomainKeepsItselfItsDotFormAndItsSubdomainsButNoLookalike) {
  CookieKeepList keep;
  ASSERT_TRUE(keep.Add(L"example.org"));
  EXPECT_TRUE(keep.Keeps(L"example.org"));
  EXPECT_TRUE(keep.Keeps(L".example.org"));
  EXPECT_TRUE(keep.Keeps(L"www.example.org"));
  EXPECT_TRUE(keep.Keeps(L"a.b.example.org"));
  EXPECT_TRUE(keep.Keeps(L"WWW.Example.ORG"));
  EXPECT_FALSE(keep.Keeps(L"badexample.org"));
  EXPECT_FALSE(keep.Keeps(L".badexample.org"));
  EXPECT_FALSE(keep.Keeps(L"example.org.evil.net"));
  EXPECT_FALSE(keep.Keeps(L"org"));
  EXPECT_FALSE(keep.Keeps(L"example.com"));
  EXPECT_FALSE(keep.Keeps(L""));
}

TEST(CookieKeepList, AnEmptyListKeepsNothing) {
  const CookieKeepList keep;
  EXPECT_TRUE(keep.Empty());
  EXPECT_FALSE(keep.Keeps(L"example.org"));
}

TEST(CookieKeepList, DomainsAreTrimmedLowerCasedAndLoseALeadingDotAndEmptyOnesAreRefused) {
  CookieKeepList keep;
  EXPECT_TRUE(keep.Add(L"  Mail.Example.ORG\t"));
  EXPECT_TRUE(keep.Add(L".news.example.net"));
  EXPECT_TRUE(keep.Add(L"mail.example.org"));  // the same domain again: listed once
  EXPECT_FALSE(keep.Add(L""));
  EXPECT_FALSE(keep.Add(L"   "));
  EXPECT_FALSE(keep.Add(L" . "));
  EXPECT_EQ(keep.Domains(), (std::vector<std::wstring>{L"mail.example.org", L"news.example.net"}));
  EXPECT_TRUE(keep.Keeps(L".mail.example.org"));
  EXPECT_TRUE(keep.Keeps(L"news.example.net"));
  EXPECT_FALSE(keep.Keeps(L"example.org"));
}

TEST(CookieKeepList, HostsInUtf8AreJudgedAsInUtf16) {
  CookieKeepList keep;
  ASSERT_TRUE(keep.Add(L"xn--bcher-kva.example"));
  EXPECT_TRUE(keep.KeepsUtf8("www.xn--bcher-kva.example"));
  EXPECT_TRUE(keep.KeepsUtf8(".XN--BCHER-KVA.EXAMPLE"));
  EXPECT_FALSE(keep.KeepsUtf8("xn--bcher-kva.example.com"));
}

}  // namespace
}  // namespace lumenor
