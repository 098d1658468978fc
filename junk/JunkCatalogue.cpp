#include "junk/JunkCatalogue.h"

#include "res/resource.h"

#include <algorithm>
#include <array>

namespace lumenor {

namespace {

constexpr std::array<JunkMaskRow, 45> kRows{{
    {L"*.swp", IDS_JUNK_KIND_TEMPORARY},
    {L"*.$$$", IDS_JUNK_KIND_TEMPORARY},
    {L"*.~*", IDS_JUNK_KIND_TEMPORARY},
    {L"*.___", IDS_JUNK_KIND_TEMPORARY},
    {L"*.^", IDS_JUNK_KIND_TEMPORARY},
    {L"*.tmp", IDS_JUNK_KIND_TEMPORARY},
    {L"*.temp", IDS_JUNK_KIND_TEMPORARY},
    {L"*.---", IDS_JUNK_KIND_TEMPORARY},
    {L"~*.*", IDS_JUNK_KIND_TEMPORARY},
    {L"*.??~", IDS_JUNK_KIND_TEMPORARY},
    {L"*.db$", IDS_JUNK_KIND_DATABASE},
    {L"*.nch", IDS_JUNK_KIND_OUTLOOK_EXPRESS},
    {L"*.pch", IDS_JUNK_KIND_VISUAL_STUDIO},
    {L"*.ncb", IDS_JUNK_KIND_VISUAL_STUDIO},
    {L"*.ilk", IDS_JUNK_KIND_VISUAL_STUDIO},
    {L"*.exp", IDS_JUNK_KIND_VISUAL_STUDIO},
    {L"*.ilc", IDS_JUNK_KIND_CPP_BUILDER},
    {L"*.ild", IDS_JUNK_KIND_CPP_BUILDER},
    {L"*.ils", IDS_JUNK_KIND_CPP_BUILDER},
    {L"*.ilf", IDS_JUNK_KIND_CPP_BUILDER},
    {L"*.tds", IDS_JUNK_KIND_CPP_BUILDER},
    {L"iebak.dat", IDS_JUNK_KIND_INTERNET_EXPLORER},
    {L"ffastun.*", IDS_JUNK_KIND_FIND_FAST},
    {L"chklist.*", IDS_JUNK_KIND_MICROSOFT},
    {L"*.sik", IDS_JUNK_KIND_JUNK},
    {L"*.gid", IDS_JUNK_KIND_HELP_INDEX},
    {L"*.fts", IDS_JUNK_KIND_HELP_WORD_LIST},
    {L"*.ftg", IDS_JUNK_KIND_HELP_WORD_LIST},
    {L"*.err", IDS_JUNK_KIND_ERROR},
    {L"*.dmp", IDS_JUNK_KIND_MEMORY_DUMP},
    {L"*.chk", IDS_JUNK_KIND_CHKDSK},
    {L"chklist.*", IDS_JUNK_KIND_CHKDSK},
    {L"file????._dd", IDS_JUNK_KIND_CHKDSK},
    {L"*.diz", IDS_JUNK_KIND_DESCRIPTION},
    {L"*.log", IDS_JUNK_KIND_LOG},
    {L"*.prv", IDS_JUNK_KIND_BACKUP},
    {L"*.old", IDS_JUNK_KIND_BACKUP},
    {L"*.nu3", IDS_JUNK_KIND_NORTON_BACKUP},
    {L"system.1st", IDS_JUNK_KIND_DIAGNOSTIC_REGISTRY},
    {L"suhdlog.dat", IDS_JUNK_KIND_DIAGNOSTIC},
    {L"modemdet.txt", IDS_JUNK_KIND_DIAGNOSTIC},
    {L"twain???.mtx", IDS_JUNK_KIND_TWAIN},
    {L"thumbs.db", IDS_JUNK_KIND_THUMBNAILS},
    {L"mscreate.dir", IDS_JUNK_KIND_INSTALLATION},
    {L"*.wri", IDS_JUNK_KIND_README},
}};

std::vector<std::wstring> MasksOfFirstRows(size_t count) {
  std::vector<std::wstring> masks;
  for (size_t row = 0; row < count && row < kRows.size(); ++row) {
    masks.emplace_back(kRows[row].mask);
  }
  return masks;
}

}  // namespace

std::span<const JunkMaskRow> JunkMaskCatalogue() { return kRows; }

std::vector<std::wstring> DefaultJunkMasks() { return MasksOfFirstRows(kDefaultJunkRows); }

std::vector<std::wstring> AllJunkMasks() { return MasksOfFirstRows(kRows.size()); }

bool IsCatalogueMask(std::wstring_view mask) {
  return std::any_of(kRows.begin(), kRows.end(), [mask](const JunkMaskRow& row) { return row.mask == mask; });
}

}  // namespace lumenor
