; Per-user setup of the 64-bit Lumenor. It installs into %LOCALAPPDATA%\Programs\Lumenor
; with the user's own rights: the program writes setting.ini beside itself, which a
; normal user could not do in Program Files. scripts/package.sh builds it with
;   makensis -DVERSION=a.b.c.d -DSTAGE_DIR=<folder with the files> -DICON_FILE=<.ico>
;            -DOUT_FILE=<setup.exe> package/lumenor.nsi
; Silent use: /S installs (add /DESKTOPSHORTCUT for a desktop shortcut), and ends with exit
; code 3 while Lumenor runs; uninstall.exe /S uninstalls and keeps the settings, and
; leaves everything in place while Lumenor runs.

Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestSupportedOS all

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh

!define PRODUCT "Lumenor"
!define PUBLISHER "The Lumenor authors"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Lumenor"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
; The program holds this mutex while it runs (one copy per user).
!define RUNNING_MUTEX "XXXXXX_LUMENOR"
; Exit code of a setup or uninstall that stopped because Lumenor was running.
!define EXIT_PROGRAM_RUNNING 3

Name "${PRODUCT}"
OutFile "${OUT_FILE}"
InstallDir "$LOCALAPPDATA\Programs\Lumenor"
; An upgrade goes where the last install went, even one made with /D=.
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "${PRODUCT} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}"
VIFileVersion "${VERSION}"
VIAddVersionKey /LANG=1033 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=1033 "CompanyName" "${PUBLISHER}"
VIAddVersionKey /LANG=1033 "FileDescription" "${PRODUCT} setup"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "LegalCopyright" "Copyright (C) 2026 ${PUBLISHER}. MIT License (LICENSE)."

!define MUI_ICON "${ICON_FILE}"
!define MUI_UNICON "${ICON_FILE}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\lumenor.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT}"

!insertmacro MUI_PAGE_LICENSE "${STAGE_DIR}/LICENSE"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Files and shortcuts would be locked or replaced under a running copy, so setup and
; uninstall wait until the user has closed it; a silent run stops at once instead.
!macro DEFINE_WAIT_FOR_PROGRAM_CLOSED prefix
Function ${prefix}WaitForProgramClosed
  retry:
  ; SYNCHRONIZE is the least access that still finds the mutex.
  System::Call 'kernel32::OpenMutexW(i 0x00100000, i 0, w "${RUNNING_MUTEX}") p .r0'
  ${If} $0 != 0
    System::Call 'kernel32::CloseHandle(p r0)'
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
      "${PRODUCT} is running. Close it (also from its icon in the notification area), then choose Retry." \
      /SD IDCANCEL IDRETRY retry
    SetErrorLevel ${EXIT_PROGRAM_RUNNING}
    Quit
  ${EndIf}
FunctionEnd
!macroend
!insertmacro DEFINE_WAIT_FOR_PROGRAM_CLOSED ""
!insertmacro DEFINE_WAIT_FOR_PROGRAM_CLOSED "un."

Section "${PRODUCT}" SectionProgram
  SectionIn RO
  ; Again here: the program may have been started while the pages were shown.
  Call WaitForProgramClosed
  SetOutPath "$INSTDIR"
  ; setting.ini is never written here, so an upgrade keeps the user's settings.
  File "${STAGE_DIR}/lumenor.exe"
  File "${STAGE_DIR}/lumenor-cli.exe"
  File "${STAGE_DIR}/README.txt"
  File "${STAGE_DIR}/LICENSE"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\lumenor.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\lumenor.exe,0"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ; In kilobytes, of the folder as installed (settings included, as Windows shows it).
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section /o "Desktop shortcut" SectionDesktop
  CreateShortcut "$DESKTOP\${PRODUCT}.lnk" "$INSTDIR\lumenor.exe"
SectionEnd

Function .onInit
  Call WaitForProgramClosed
  ; An upgrade keeps the desktop shortcut that the user chose before.
  ${If} ${FileExists} "$DESKTOP\${PRODUCT}.lnk"
    !insertmacro SelectSection ${SectionDesktop}
  ${EndIf}
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/DESKTOPSHORTCUT" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SectionDesktop}
  ${EndIf}
FunctionEnd

Function un.onInit
  Call un.WaitForProgramClosed
FunctionEnd

; Removes exactly what setup put in place, the community rules the program downloaded
; and the program's log-on value, and asks about the settings; nothing else of the user's
; is touched.
Section "Uninstall"
  StrCpy $0 "remove"
  MessageBox MB_YESNO|MB_ICONQUESTION \
    "Keep your ${PRODUCT} settings (setting.ini) for a later install?" /SD IDYES IDNO +2
  StrCpy $0 "keep"

  Delete "$INSTDIR\lumenor.exe"
  Delete "$INSTDIR\lumenor-cli.exe"
  Delete "$INSTDIR\README.txt"
  Delete "$INSTDIR\LICENSE"
  Delete "$INSTDIR\uninstall.exe"
  ${If} $0 == "remove"
    Delete "$INSTDIR\setting.ini"
  ${EndIf}
  ; The community rules that "lumenor-cli rules update" or the settings page downloaded
  ; (setup never ships them), and a download cut short. The user's own "rules" folder stays,
  ; as the settings do.
  Delete "$INSTDIR\winapp2.ini"
  Delete "$INSTDIR\winapp2.ini.download"
  ; Only when empty: the kept settings, or anything the user put there, stay.
  RMDir "$INSTDIR"

  Delete "$SMPROGRAMS\${PRODUCT}.lnk"
  Delete "$DESKTOP\${PRODUCT}.lnk"
  DeleteRegValue HKCU "${RUN_KEY}" "Lumenor"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
