// The program's version, shown in the version resource and compared by the update check.
#pragma once

#define LUMENOR_VERSION_MAJOR 3
#define LUMENOR_VERSION_MINOR 1
#define LUMENOR_VERSION_PATCH 0
#define LUMENOR_VERSION_BUILD 0
#define LUMENOR_VERSION_TEXT "3.1.0.0"
#define LUMENOR_VERSION_TEXT_W L"3.1.0.0"
