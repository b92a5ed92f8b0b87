; The installer of Tonvane for Windows: for one user, without an administrator.
;
; tools/package-windows gives VERSION, FILES (the folder with what is installed) and OUTPUT.
Unicode true
!include MUI2.nsh

Name "Tonvane"
OutFile "${OUTPUT}"
RequestExecutionLevel user
SetCompressor /SOLID lzma
InstallDir "$LOCALAPPDATA\Programs\Tonvane"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Tonvane"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installs Tonvane"
VIAddVersionKey "LegalCopyright" "The Tonvane authors"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tonvane"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
!define MUI_ICON "${FILES}\tonvane.ico"
!define MUI_UNICON "${FILES}\tonvane.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\Tonvane.exe"

!insertmacro MUI_PAGE_LICENSE "${FILES}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Section
    SetOutPath "$INSTDIR"
    File "${FILES}\Tonvane.exe"
    File "${FILES}\tonvane-cli.exe"
    File "${FILES}\LICENSE.txt"
    SetOutPath "$INSTDIR\examples"
    File "${FILES}\examples\*.*"
    ; The working folder of the shortcut is where a program started from it writes: that of the user.
    SetOutPath "$DOCUMENTS"
    CreateShortcut "$SMPROGRAMS\Tonvane.lnk" "$INSTDIR\Tonvane.exe"

    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Tonvane"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\Tonvane.exe"
    WriteRegStr HKCU "${UNINSTALL}" "Publisher" "The Tonvane authors"
    WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; The list of recent files is the user's and stays. So does everything in the folder that was not
; installed.
Section "Uninstall"
    Delete "$INSTDIR\Tonvane.exe"
    Delete "$INSTDIR\tonvane-cli.exe"
    Delete "$INSTDIR\LICENSE.txt"
    !include "${FILES}\examples.nsh"
    RMDir "$INSTDIR\examples"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Tonvane.lnk"
    DeleteRegKey HKCU "${UNINSTALL}"
SectionEnd
