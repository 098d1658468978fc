// Numbers of the program's pictures: bitmaps, icons and GIF animations, by page.
// Written by tools/art/generate_art.py together with res/artwork.rc; edit the script,
// not this file. Picture buttons list their pictures in the order the skinned
// button takes them: normal, hot (mouse over), pressed, disabled.
#pragma once

// Splash window
#define IDB_SPLASH 227          // 456x300 splash: product mark, name and purpose
#define IDB_SPLASH_WELCOME 228  // 456x300 welcome picture (also the menu side bar's picture)

// Main window: program icon, notification-area animation and menu icons
#define IDI_MAIN 128            // program icon: shield with a light burst on a deep-blue tile
#define IDI_TRAY_FRAME0 312     // busy notification icon, frame 0 (arc at quarter 0)
#define IDI_TRAY_FRAME1 313     // busy notification icon, frame 1 (arc at quarter 1)
#define IDI_TRAY_FRAME2 314     // busy notification icon, frame 2 (arc at quarter 2)
#define IDI_TRAY_FRAME3 311     // busy notification icon, frame 3 (arc at quarter 3)
#define IDI_MENU_SECURITY 299   // menu entry Security(&S)
#define IDI_MENU_JUNK 386       // menu entry Junk(&J)
#define IDI_MENU_SHREDDER 297   // menu entry Shredder(&F)
#define IDI_MENU_SETTINGS 300   // menu entry Settings(&O)
#define IDI_MENU_HELP 231       // menu entry Help(&H)
#define IDI_MENU_ONE_CLICK 229  // menu entry One-click Erase(&C)
#define IDI_MENU_EXIT 161       // menu entry Exit(&C)

// Main window: tab strip, pictures per tab in the order normal, hot, selected
#define IDB_TAB_SCAN_NORMAL 366        // 124x36 tab "Privacy Scan", normal
#define IDB_TAB_SCAN_HOT 365           // 124x36 tab "Privacy Scan", hot
#define IDB_TAB_SCAN_SELECTED 364      // 124x36 tab "Privacy Scan", selected
#define IDB_TAB_JUNK_NORMAL 357        // 124x36 tab "Junk Files", normal
#define IDB_TAB_JUNK_HOT 356           // 124x36 tab "Junk Files", hot
#define IDB_TAB_JUNK_SELECTED 355      // 124x36 tab "Junk Files", selected
#define IDB_TAB_SHRED_NORMAL 351       // 124x36 tab "Shredder", normal
#define IDB_TAB_SHRED_HOT 361          // 124x36 tab "Shredder", hot
#define IDB_TAB_SHRED_SELECTED 362     // 124x36 tab "Shredder", selected
#define IDB_TAB_SETTINGS_NORMAL 202    // 124x36 tab "Settings", normal
#define IDB_TAB_SETTINGS_HOT 200       // 124x36 tab "Settings", hot
#define IDB_TAB_SETTINGS_SELECTED 199  // 124x36 tab "Settings", selected

// Settings page
#define IDB_SETTINGS_PANEL 219  // 580x340 panel drawn at (10,10) behind the settings controls

// Help page
#define IDB_HELP_BACKGROUND 232       // 600x170 heading band: title and introduction above the three buttons
#define IDB_HELP_SUPPORT_NORMAL 250   // 151x166 help button "Online Help", normal
#define IDB_HELP_SUPPORT_HOT 384      // 151x166 help button "Online Help", hot
#define IDB_HELP_SUPPORT_PRESSED 249  // 151x166 help button "Online Help", pressed
#define IDB_HELP_MANUAL_NORMAL 252    // 151x166 help button "User Manual", normal
#define IDB_HELP_MANUAL_HOT 385       // 151x166 help button "User Manual", hot
#define IDB_HELP_MANUAL_PRESSED 251   // 151x166 help button "User Manual", pressed
#define IDB_HELP_CONTACT_NORMAL 248   // 151x166 help button "Contact Us", normal
#define IDB_HELP_CONTACT_HOT 383      // 151x166 help button "Contact Us", hot
#define IDB_HELP_CONTACT_PRESSED 253  // 151x166 help button "Contact Us", pressed

// Item trees: the catalogue pictures, image-list indexes 0 to 36 in this order, 16x16, background RGB(1,0,0)
#define IDB_CATALOGUE_WINDOWS 182            // index 0: Windows Cache and History
#define IDB_CATALOGUE_INTERNET 183           // index 1: Internet Browsing History
#define IDB_CATALOGUE_MESSAGING 237          // index 2: Instant Messaging
#define IDB_CATALOGUE_OFFICE 247             // index 3: MS Office
#define IDB_CATALOGUE_MULTIMEDIA 321         // index 4: Multimedia
#define IDB_CATALOGUE_FILE_SHARING 260       // index 5: File Sharing
#define IDB_CATALOGUE_MAIL 259               // index 6: Mail
#define IDB_CATALOGUE_THIRD_PARTY 258        // index 7: Third-Party Applications
#define IDB_CATALOGUE_WINDOWS_ENTRIES 310    // index 8: Windows Entries
#define IDB_CATALOGUE_INTERNET_EXPLORER 246  // index 9: Internet Explorer
#define IDB_CATALOGUE_NETSCAPE 309           // index 10: Netscape Navigator 9.x
#define IDB_CATALOGUE_OPERA 308              // index 11: Opera 9.x
#define IDB_CATALOGUE_FIREFOX 238            // index 12: Mozilla Firefox 3.x
#define IDB_CATALOGUE_ICQ 316                // index 13: ICQ 6.5
#define IDB_CATALOGUE_YAHOO_MESSENGER 315    // index 14: Yahoo Instant Messager
#define IDB_CATALOGUE_MSN_MESSENGER 317      // index 15: MSN Messager and Window Living Messager
#define IDB_CATALOGUE_SHARED_OFFICE 318      // index 16: Shared Office Resource
#define IDB_CATALOGUE_OFFICE_2003 319        // index 17: MS Office 2003
#define IDB_CATALOGUE_MEDIA_PLAYER 323       // index 18: Windows Media Player
#define IDB_CATALOGUE_WINAMP 333             // index 19: Winamp
#define IDB_CATALOGUE_REAL_PLAYER 320        // index 20: Real Player
#define IDB_CATALOGUE_DIVX 336               // index 21: DivX Player
#define IDB_CATALOGUE_QUICKTIME 334          // index 22: QuickTime
#define IDB_CATALOGUE_ACDSEE 345             // index 23: ACDSee 5.0
#define IDB_CATALOGUE_AZUREUS 347            // index 24: Azureus
#define IDB_CATALOGUE_BITTORRENT 349         // index 25: BitTorrent
#define IDB_CATALOGUE_UTORRENT 348           // index 26: uTorrent
#define IDB_CATALOGUE_LIMEWIRE 373           // index 27: Limewire
#define IDB_CATALOGUE_BITCOMET 374           // index 28: BitComet
#define IDB_CATALOGUE_OUTLOOK 338            // index 29: Outlook (kept in the list, shown by no node)
#define IDB_CATALOGUE_THUNDERBIRD 339        // index 30: Thunderbird
#define IDB_CATALOGUE_EUDORA 342             // index 31: Eudora
#define IDB_CATALOGUE_POCOMAIL 343           // index 32: PocoMail
#define IDB_CATALOGUE_INCREDIMAIL 344        // index 33: IncrediMail
#define IDB_CATALOGUE_ACROBAT 390            // index 34: Adobe Acrobat
#define IDB_CATALOGUE_FLASH_PLAYER 391       // index 35: Macromedia Flash Player
#define IDB_CATALOGUE_DESKTOP_SEARCH 392     // index 36: Google Desktop Search

// Item trees: the rules' category pictures, image-list indexes 37 to 41, 16x16, background RGB(1,0,0)
#define IDB_CATALOGUE_BROWSERS_TODAY 393      // index 37: Web Browsers Today
#define IDB_CATALOGUE_WINDOWS_TODAY 394       // index 38: Windows 10 and 11
#define IDB_CATALOGUE_APPLICATIONS_TODAY 395  // index 39: Applications Today
#define IDB_CATALOGUE_COMMUNITY_RULES 396     // index 40: Community Rules (the community's winapp2.ini)
#define IDB_CATALOGUE_OWN_RULES 397           // index 41: every category of the user's own rule files

// Privacy scan page: picture buttons, four pictures each in the order normal, hot, pressed, disabled
#define IDB_SCAN_NORMAL 207             // 104x27 "Scan" button, normal
#define IDB_SCAN_HOT 210                // 104x27 "Scan" button, hot
#define IDB_SCAN_PRESSED 209            // 104x27 "Scan" button, pressed
#define IDB_SCAN_DISABLED 180           // 104x27 "Scan" button, disabled
#define IDB_STOP_NORMAL 273             // 128x29 "Stop" button, normal
#define IDB_STOP_PRESSED 274            // 128x29 "Stop" button, pressed
#define IDB_DELETE_ROW_NORMAL 214       // 104x27 "Delete" button, normal
#define IDB_DELETE_ROW_HOT 213          // 104x27 "Delete" button, hot
#define IDB_DELETE_ROW_PRESSED 212      // 104x27 "Delete" button, pressed
#define IDB_DELETE_ROW_DISABLED 211     // 104x27 "Delete" button, disabled
#define IDB_ERASE_NORMAL 215            // 104x27 "Erase" button, normal
#define IDB_ERASE_HOT 218               // 104x27 "Erase" button, hot
#define IDB_ERASE_PRESSED 217           // 104x27 "Erase" button, pressed
#define IDB_ERASE_DISABLED 216          // 104x27 "Erase" button, disabled
#define IDB_SELECT_ALL_NORMAL 327       // 149x21 "Select All" button, normal
#define IDB_SELECT_ALL_HOT 326          // 149x21 "Select All" button, hot
#define IDB_SELECT_ALL_PRESSED 325      // 149x21 "Select All" button, pressed
#define IDB_SELECT_NONE_NORMAL 324      // 149x21 "Select None" button, normal
#define IDB_SELECT_NONE_HOT 332         // 149x21 "Select None" button, hot
#define IDB_SELECT_NONE_PRESSED 331     // 149x21 "Select None" button, pressed
#define IDB_SELECT_DEFAULT_NORMAL 330   // 149x21 "Select Default" button, normal
#define IDB_SELECT_DEFAULT_HOT 329      // 149x21 "Select Default" button, hot
#define IDB_SELECT_DEFAULT_PRESSED 328  // 149x21 "Select Default" button, pressed

// Item trees: check-box state pictures, 4 cells of 16x16 (none, unticked, partly ticked, ticked)
#define IDB_TREE_CHECKS 184       // 64x16 check-box strip, magenta background
#define IDB_TREE_CHECKS_MASK 185  // 64x16 1-bit mask of the check-box strip, white where transparent

// Item tree: busy strip (8 frames of 16x16) and done mark, magenta background
#define IDB_TREE_BUSY 187  // 128x16 strip: 8 frames of a turning arc
#define IDB_TREE_DONE 188  // 16x16 done mark: white tick on a teal disc

// Privacy scan and junk pages: busy animation
#define IDR_GIF_BUSY 206  // 120x90, 12 frames: a magnifier circling over a document

// Erase progress dialog
#define IDR_GIF_ERASE 245         // 272x147, 16 frames: documents dissolving in a beam of light
#define IDB_ERASE_BACKGROUND 236  // 429x302 dialog picture, magenta outside the rounded corners
#define IDB_ERASE_CELLS 254       // 48x11: lit progress cell at x 0, unlit at x 24 (24x11 each)
#define IDB_ERASE_WARNING 341     // 275x42 warning shown when some deletions failed

// Erase progress dialog: picture buttons, in the order normal, hot, pressed
#define IDB_ERASE_CLOSE_NORMAL 239    // 64x20 "Close" button, normal
#define IDB_ERASE_CLOSE_HOT 241       // 64x20 "Close" button, hot
#define IDB_ERASE_CLOSE_PRESSED 240   // 64x20 "Close" button, pressed
#define IDB_ERASE_CANCEL_NORMAL 242   // 64x20 "Cancel" button, normal
#define IDB_ERASE_CANCEL_HOT 244      // 64x20 "Cancel" button, hot
#define IDB_ERASE_CANCEL_PRESSED 243  // 64x20 "Cancel" button, pressed

// Settings page: save button, in the order normal, hot, pressed, disabled
#define IDB_SETTINGS_SAVE_NORMAL 501    // 104x27 "Save" button, normal
#define IDB_SETTINGS_SAVE_HOT 502       // 104x27 "Save" button, hot
#define IDB_SETTINGS_SAVE_PRESSED 503   // 104x27 "Save" button, pressed
#define IDB_SETTINGS_SAVE_DISABLED 504  // 104x27 "Save" button, disabled

// Junk page: set-up start button and result page buttons, normal, hot, pressed, disabled
#define IDB_JUNK_START_NORMAL 511         // 104x27 "Start" button, normal
#define IDB_JUNK_START_HOT 512            // 104x27 "Start" button, hot
#define IDB_JUNK_START_PRESSED 513        // 104x27 "Start" button, pressed
#define IDB_JUNK_START_DISABLED 514       // 104x27 "Start" button, disabled
#define IDB_JUNK_STOP_NORMAL 515          // 104x27 "Stop" button, normal
#define IDB_JUNK_STOP_HOT 516             // 104x27 "Stop" button, hot
#define IDB_JUNK_STOP_PRESSED 517         // 104x27 "Stop" button, pressed
#define IDB_JUNK_STOP_DISABLED 518        // 104x27 "Stop" button, disabled
#define IDB_JUNK_DELETE_NORMAL 519        // 104x27 "Delete" button, normal
#define IDB_JUNK_DELETE_HOT 520           // 104x27 "Delete" button, hot
#define IDB_JUNK_DELETE_PRESSED 521       // 104x27 "Delete" button, pressed
#define IDB_JUNK_DELETE_DISABLED 522      // 104x27 "Delete" button, disabled
#define IDB_JUNK_DELETE_ALL_NORMAL 523    // 104x27 "Delete All" button, normal
#define IDB_JUNK_DELETE_ALL_HOT 524       // 104x27 "Delete All" button, hot
#define IDB_JUNK_DELETE_ALL_PRESSED 525   // 104x27 "Delete All" button, pressed
#define IDB_JUNK_DELETE_ALL_DISABLED 526  // 104x27 "Delete All" button, disabled

// Junk page: two-tab strip, pictures per tab in the order normal, hot, selected
#define IDB_JUNK_TAB_SETUP_NORMAL 531      // 124x36 junk tab "Set up", normal
#define IDB_JUNK_TAB_SETUP_HOT 532         // 124x36 junk tab "Set up", hot
#define IDB_JUNK_TAB_SETUP_SELECTED 533    // 124x36 junk tab "Set up", selected
#define IDB_JUNK_TAB_RESULTS_NORMAL 534    // 124x36 junk tab "Results", normal
#define IDB_JUNK_TAB_RESULTS_HOT 535       // 124x36 junk tab "Results", hot
#define IDB_JUNK_TAB_RESULTS_SELECTED 536  // 124x36 junk tab "Results", selected

// Shred page: shred button, idle look then running look, each normal, hot, pressed, disabled
#define IDB_SHRED_NORMAL 541         // 104x27 "Shred" button, normal
#define IDB_SHRED_HOT 542            // 104x27 "Shred" button, hot
#define IDB_SHRED_PRESSED 543        // 104x27 "Shred" button, pressed
#define IDB_SHRED_DISABLED 544       // 104x27 "Shred" button, disabled
#define IDB_SHRED_STOP_NORMAL 545    // 104x27 "Stop" button, normal
#define IDB_SHRED_STOP_HOT 546       // 104x27 "Stop" button, hot
#define IDB_SHRED_STOP_PRESSED 547   // 104x27 "Stop" button, pressed
#define IDB_SHRED_STOP_DISABLED 548  // 104x27 "Stop" button, disabled
