; The installer of Quorvane for Windows, for one user or for all of a machine. Without questions:
;   setup.exe /S [/CurrentUser | /AllUsers] [/D=FOLDER]      uninstall.exe /S
; makensis gets VERSION, STAGE (the folder that is installed), LICENCE, ICON and OUT.
Target amd64-unicode
SetCompressor /SOLID lzma

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "Quorvane"
!define MULTIUSER_USE_PROGRAMFILES64
!define PROGRAM_KEY "Software\Quorvane"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${PROGRAM_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "Folder"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${PROGRAM_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallMode"
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quorvane"
!define TYPE "Quorvane.Experiment"

Name "Quorvane ${VERSION}"
OutFile "${OUT}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Quorvane"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Quorvane ${VERSION}: installer"
VIAddVersionKey LegalCopyright "GPL-3.0-or-later"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\quorvane.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${LICENCE}"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; /D=FOLDER counts before what MultiUser proposes.
Function .onInit
  SetRegView 64
  StrCpy $R0 $INSTDIR
  !insertmacro MULTIUSER_INIT
  StrCmp $R0 "" +2
  StrCpy $INSTDIR $R0
FunctionEnd

Function un.onInit
  SetRegView 64
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

; Tells the desktop that the programs for kinds of files have changed.
!macro TellDesktop
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

; A running program cannot be replaced: better no change than half a one.
!macro RefuseWhileRunning un
  Function ${un}RefuseWhileRunning
    IfFileExists "$INSTDIR\quorvane.exe" 0 free
    ClearErrors
    FileOpen $0 "$INSTDIR\quorvane.exe" a
    FileClose $0
    IfErrors 0 free
    MessageBox MB_ICONSTOP "Quorvane is running, or its folder is write-protected. Close it, then start this again." /SD IDOK
    SetErrorLevel 2
    Quit
  free:
  FunctionEnd
!macroend
!insertmacro RefuseWhileRunning ""
!insertmacro RefuseWhileRunning "un."

Section
  Call RefuseWhileRunning
  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\Quorvane"
  CreateShortCut "$SMPROGRAMS\Quorvane\Quorvane.lnk" "$INSTDIR\quorvane.exe"
  CreateShortCut "$SMPROGRAMS\Quorvane\Examples.lnk" "$INSTDIR\examples"
  CreateShortCut "$SMPROGRAMS\Quorvane\Uninstall Quorvane.lnk" "$INSTDIR\uninstall.exe"

  ; SHCTX is the registry of the user or of the machine.
  WriteRegStr SHCTX "Software\Classes\${TYPE}" "" "Quorvane experiment"
  WriteRegStr SHCTX "Software\Classes\${TYPE}\DefaultIcon" "" "$INSTDIR\quorvane.exe,0"
  WriteRegStr SHCTX "Software\Classes\${TYPE}\shell\open\command" "" '"$INSTDIR\quorvane.exe" "%1"'
  ReadRegStr $0 SHCTX "Software\Classes\.exz" ""
  StrCmp $0 "" 0 +2
  WriteRegStr SHCTX "Software\Classes\.exz" "" "${TYPE}"
  WriteRegStr SHCTX "Software\Classes\.exz\OpenWithProgids" "${TYPE}" ""
  !insertmacro TellDesktop

  WriteRegStr SHCTX "${PROGRAM_KEY}" "Folder" "$INSTDIR"
  WriteRegStr SHCTX "${PROGRAM_KEY}" "InstallMode" "$MultiUser.InstallMode"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Quorvane"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\quorvane.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

; Removes what was installed and nothing else: a folder goes when it is empty. Settings and unsaved
; work of the users stay, as they do on other systems.
Section "Uninstall"
  Call un.RefuseWhileRunning
  !include "${REMOVALS}"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"

  Delete "$SMPROGRAMS\Quorvane\Quorvane.lnk"
  Delete "$SMPROGRAMS\Quorvane\Examples.lnk"
  Delete "$SMPROGRAMS\Quorvane\Uninstall Quorvane.lnk"
  RMDir "$SMPROGRAMS\Quorvane"

  ReadRegStr $0 SHCTX "Software\Classes\.exz" ""
  StrCmp $0 "${TYPE}" 0 +2
  DeleteRegValue SHCTX "Software\Classes\.exz" ""
  DeleteRegValue SHCTX "Software\Classes\.exz\OpenWithProgids" "${TYPE}"
  DeleteRegKey /ifempty SHCTX "Software\Classes\.exz\OpenWithProgids"
  DeleteRegKey /ifempty SHCTX "Software\Classes\.exz"
  DeleteRegKey SHCTX "Software\Classes\${TYPE}"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  DeleteRegKey SHCTX "${PROGRAM_KEY}"
  !insertmacro TellDesktop
SectionEnd
