// The file picker of the shred page: the system's file-open dialog with many files chosen
// at once. Its folder browser is the one every page shares (controls/FolderPicker.h).
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace lumenor {

// The files the user chose, each as a whole path; empty when the dialog was cancelled
// (or the choice did not fit even the large buffer, which the dialog reports itself).
std::vector<std::wstring> PickFiles(HWND owner);

// Splits the buffer of a multiple-choice file dialog into whole paths: either one path,
// or the folder followed by the chosen names, each ended by a null, the list by two.
std::vector<std::wstring> ChosenPaths(const wchar_t* buffer, size_t size);

}  // namespace lumenor
