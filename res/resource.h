// Resource numbers of the executable, grouped by the dialog or page that uses them.
// The privacy catalogue's names are string-table entries 102 to 387, addressed by item id.
#pragma once

// Main window
#define IDD_MAIN 102
#define IDC_MAIN_PLACEHOLDER 1000
