// Resource numbers of the executable, grouped by the dialog or page that uses them.
// The privacy catalogue's names are string-table entries 102 to 387, addressed by item id;
// the shell's own texts are string-table entries from 4000 up.
#pragma once

// Main window: the skinned frame with its tab strip, buttons and home-page link.
#define IDD_MAIN 102
#define IDC_MAIN_HELP 1002
#define IDC_MAIN_HOME_LINK 1037
#define IDC_MAIN_HELP_FOOTER 1039
#define IDC_MAIN_AD 1040
#define IDC_MAIN_UPDATE 1045
#define IDC_MAIN_TABS 1100
#define IDC_SKIN_CLOSE 10200
#define IDC_SKIN_MINIMIZE 10202

// Notification-area menu commands (sent to the main window).
#define ID_TRAY_SECURITY 20000
#define ID_TRAY_JUNK 20001
#define ID_TRAY_SETTINGS 20002
#define ID_TRAY_SHREDDER 20003
#define ID_TRAY_HELP_PAGE 20004
#define ID_TRAY_HELP 20005
#define ID_TRAY_ONE_CLICK 20006
#define ID_TRAY_EXIT 20007

// Splash.
#define IDD_WELCOME 226

// Privacy scan page; every control but the animation, the summary line and the
// keep-list's button is made at run time.
#define IDD_SCAN 129
#define IDC_SCAN_ANIMATION 1016
#define IDC_SCAN_TREE 10000
#define IDC_SCAN_RESULTS 10001
#define IDC_SCAN_SUMMARY 10002
#define IDC_SCAN_START 15001
#define IDC_SCAN_DELETE_ROW 15002
#define IDC_SCAN_ERASE 15003
#define IDC_SCAN_COOKIES_TO_KEEP 15004
#define IDC_SCAN_SELECT_ALL 15100
#define IDC_SCAN_SELECT_NONE 15101
#define IDC_SCAN_SELECT_DEFAULT 15102

// Settings page.
#define IDD_OPTIONS 130
#define IDC_OPTIONS_SAVE 1011
#define IDC_OPTIONS_EXIT 1012
#define IDC_OPTIONS_TRAY 1013
#define IDC_OPTIONS_RUN_AT_STARTUP 1017
#define IDC_OPTIONS_AUTO_UPDATE 1018
#define IDC_OPTIONS_SCAN_EVERY 1020
#define IDC_OPTIONS_DAY 1021
#define IDC_OPTIONS_HOUR 1022
#define IDC_OPTIONS_MINUTE 1023
#define IDC_OPTIONS_WHEN 1024
#define IDC_OPTIONS_AT 1025
#define IDC_OPTIONS_COLON 1026
#define IDC_OPTIONS_ONE_CLICK 1044
#define IDC_OPTIONS_CHECK_UPDATE 1045
#define IDC_OPTIONS_GENERAL_FRAME 1056
#define IDC_OPTIONS_EXIT_FRAME 1057
#define IDC_OPTIONS_SCHEDULER_FRAME 1058

// Shredder page.
#define IDD_SHRED 157
#define IDC_SHRED_LIST 1050
#define IDC_SHRED_QUICK 1051
#define IDC_SHRED_SAFE 1052
#define IDC_SHRED_THOROUGH 1053
#define IDC_SHRED_PROGRESS 1054
#define IDC_SHRED_ADD_FILE 15005
#define IDC_SHRED_ADD_FOLDER 15006
#define IDC_SHRED_CANCEL_FILE 15007
#define IDC_SHRED_CANCEL_ALL 15008
#define IDC_SHRED_SHRED 15009

// Junk cleaner page: a frame with a two-tab strip over two sub-pages, the set-up page
// (the mask catalogue and where to look) and the result page (found files and removal).
#define IDD_JUNK 350
#define IDC_JUNK_TABS 1069
#define IDD_JUNK_SCAN 610
#define IDC_JUNK_CATALOG_LABEL 1070
#define IDC_JUNK_CATALOG 1071
#define IDC_JUNK_SCOPE_LABEL 1072
#define IDC_JUNK_ALL_DISKS 1073
#define IDC_JUNK_CHOOSE_FOLDER 1074
#define IDC_JUNK_FOLDER 1075
#define IDC_JUNK_BROWSE 1076
#define IDC_JUNK_SELECT_LABEL 1077
#define IDC_JUNK_DEFAULT 1078
#define IDC_JUNK_ALL 1079
#define IDC_JUNK_NONE 1080
#define IDC_JUNK_START 30008
#define IDD_JUNK_RESULTS 611
#define IDC_JUNK_RESULTS 1081
#define IDC_JUNK_SUMMARY 1082
#define IDC_JUNK_ANIMATION 1083
#define IDC_JUNK_STOP 30005
#define IDC_JUNK_DELETE 30006
#define IDC_JUNK_DELETE_ALL 30007

// Help page; its three buttons are made at run time.
#define IDD_HELP 233
#define IDC_HELP_SUPPORT 1011
#define IDC_HELP_MANUAL 1012
#define IDC_HELP_SUPPORT_AGAIN 1013

// Texts of the shell.
#define IDS_PRODUCT_NAME 4000
#define IDS_TRAY_SECURITY 4001
#define IDS_TRAY_JUNK 4002
#define IDS_TRAY_SHREDDER 4003
#define IDS_TRAY_SETTINGS 4004
#define IDS_TRAY_HELP 4005
#define IDS_TRAY_ONE_CLICK 4006
#define IDS_TRAY_EXIT 4007
#define IDS_AUTO_SCAN_TITLE 4010
#define IDS_AUTO_SCAN_TEXT 4011
#define IDS_SCAN_COLUMN_NAME 4020
#define IDS_SCAN_COLUMN_VALUE 4021
#define IDS_SCAN_COLUMN_ITEM 4022
#define IDS_SHRED_COLUMN_NAME 4030
#define IDS_SHRED_COLUMN_PATH 4031
#define IDS_SHRED_COLUMN_SIZE 4032
#define IDS_SHRED_CONFIRM 4033
#define IDS_SHRED_NO_MEMORY 4034
#define IDS_SHRED_PROTECTED_FOLDER 4035
#define IDS_SHRED_FOLDER_REFUSED 4036
#define IDS_SHRED_NOT_LISTED 4037
#define IDS_SHRED_NOT_SHREDDED 4038
#define IDS_SHRED_CHOOSE_FOLDER 4039
#define IDS_JUNK_COLUMN_TYPE 4040
#define IDS_JUNK_COLUMN_DESCRIPTION 4041
#define IDS_JUNK_COLUMN_FILE 4042
#define IDS_JUNK_COLUMN_PATH 4043
#define IDS_JUNK_NOTHING_CHOSEN 4044
#define IDS_JUNK_CHOOSE_PATH 4045
#define IDS_JUNK_BROWSE_TITLE 4046
#define IDS_JUNK_DELETE_FAILED 4047
#define IDS_JUNK_CONFIRM_DELETE_ALL 4048
#define IDS_JUNK_SUMMARY 4049

// Junk mask descriptions, one entry per kind of junk (the catalogue's second column).
#define IDS_JUNK_KIND_TEMPORARY 4100
#define IDS_JUNK_KIND_DATABASE 4101
#define IDS_JUNK_KIND_OUTLOOK_EXPRESS 4102
#define IDS_JUNK_KIND_VISUAL_STUDIO 4103
#define IDS_JUNK_KIND_CPP_BUILDER 4104
#define IDS_JUNK_KIND_INTERNET_EXPLORER 4105
#define IDS_JUNK_KIND_FIND_FAST 4106
#define IDS_JUNK_KIND_MICROSOFT 4107
#define IDS_JUNK_KIND_JUNK 4108
#define IDS_JUNK_KIND_HELP_INDEX 4109
#define IDS_JUNK_KIND_HELP_WORD_LIST 4110
#define IDS_JUNK_KIND_ERROR 4111
#define IDS_JUNK_KIND_MEMORY_DUMP 4112
#define IDS_JUNK_KIND_CHKDSK 4113
#define IDS_JUNK_KIND_DESCRIPTION 4114
#define IDS_JUNK_KIND_LOG 4115
#define IDS_JUNK_KIND_BACKUP 4116
#define IDS_JUNK_KIND_NORTON_BACKUP 4117
#define IDS_JUNK_KIND_DIAGNOSTIC_REGISTRY 4118
#define IDS_JUNK_KIND_DIAGNOSTIC 4119
#define IDS_JUNK_KIND_TWAIN 4120
#define IDS_JUNK_KIND_THUMBNAILS 4121
#define IDS_JUNK_KIND_INSTALLATION 4122
#define IDS_JUNK_KIND_README 4123

// Erase progress dialog, shown while an erase runs; as large as its background picture.
#define IDD_ERASE_PROGRESS 235
#define IDC_ERASE_CLOSE 1028
#define IDC_ERASE_CANCEL 1029
#define IDC_ERASE_TOTAL 1030
#define IDC_ERASE_DELETED 1031
#define IDC_ERASE_FAILED 1032
#define IDC_ERASE_ANIMATION 1033
#define IDC_ERASE_WARNING 1046

// Privacy scan workflow: status texts of the notification area and the page's messages.
#define IDS_STATUS_SCANNING 4400
#define IDS_STATUS_SCAN_ITEMS 4401
#define IDS_STATUS_SCAN_DONE 4402
#define IDS_STATUS_SCAN_TOTAL 4403
#define IDS_STATUS_DELETING 4404
#define IDS_STATUS_DELETE_ITEMS 4405
#define IDS_STATUS_DELETE_DONE 4406
#define IDS_STATUS_DELETE_TOTAL 4407
#define IDS_SELECT_ALL_CAPTION 4408
#define IDS_SELECT_ALL_WARNING 4409
#define IDS_SCAN_SKIPPED 4410
#define IDS_SCAN_SUMMARY 4411
#define IDS_RULE_WARNING_CAPTION 4412
#define IDS_COMMUNITY_NOTE 4413
#define IDS_RULE_PROBLEMS 4414

// Settings page and update check.
#define IDS_OPTIONS_DAY_FIRST 4500  // "Day", then "Sunday" to "Saturday": 4500 to 4507
#define IDS_OPTIONS_AM 4508
#define IDS_OPTIONS_PM 4509
#define IDS_OPTIONS_CHANGED 4510
#define IDS_UPDATE_CONNECTION_FAILED 4520
#define IDS_UPDATE_NONE 4521
#define IDS_UPDATE_AVAILABLE 4522

// One-click selection dialog: the item tree is made at run time.
#define IDD_ONE_CLICK_ITEMS 140
#define IDC_ONE_CLICK_SELECT_NONE 3
#define IDC_ONE_CLICK_TREE 10010

// Cookies to Keep: the domains whose cookies an erase leaves, picked from those the last
// scan found or typed; reached from the scan page.
#define IDD_COOKIES_TO_KEEP 142
#define IDC_KEEP_FOUND_LABEL 10020
#define IDC_KEEP_FOUND 10021
#define IDC_KEEP_ADD_FOUND 10022
#define IDC_KEEP_REMOVE 10023
#define IDC_KEEP_LIST_LABEL 10024
#define IDC_KEEP_LIST 10025
#define IDC_KEEP_DOMAIN_LABEL 10026
#define IDC_KEEP_DOMAIN 10027
#define IDC_KEEP_ADD_TYPED 10028
#define IDC_KEEP_NOTE 10029

// The built-in cleaning rules: a rule file compiled in (res/rules/builtin_rules.xml).
#define IDR_BUILTIN_RULES 8000
