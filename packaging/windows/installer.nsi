; The installer of Tonewright for Windows: for one user, without an administrator. It takes what the
; folder of the program holds from two lists, which `build` writes:
;   FILES_TO_INSTALL  a SetOutPath for each folder, a File for each file
;   FILES_TO_REMOVE   a Delete for each file, an RMDir for each folder, the inner ones first
; Also given: VERSION, VERSION_NUMBERS (four, with dots), KILOBYTES, ICON, OUTPUT.
; In silent mode (/S) nothing is asked; /D=FOLDER, as the last argument, chooses the folder.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
SetDateSave off
ManifestDPIAware true
ManifestSupportedOS Win10
RequestExecutionLevel user

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh

Name "Tonewright"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Tonewright"
BrandingText " "

!define CLASSES "Software\Classes"
!define UNINSTALLS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL "${UNINSTALLS}\Tonewright"
!define APP_PATHS "Software\Microsoft\Windows\CurrentVersion\App Paths"
!define APP_PATH "${APP_PATHS}\tonewright.exe"
!define SETTINGS "Quillbrook\Extras.ini" ; for all users, which an administrator may have changed

InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"

VIProductVersion "${VERSION_NUMBERS}"
VIFileVersion "${VERSION_NUMBERS}"
VIAddVersionKey /LANG=0 "ProductName" "Tonewright"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileDescription" "Installs Tonewright"
VIAddVersionKey /LANG=0 "CompanyName" "Tonewright developers"
VIAddVersionKey /LANG=0 "LegalCopyright" ""

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\tonewright.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; The kinds of files. A double click opens a bank in the program; the others have a name and an icon.
!macro EachKind Do
  !insertmacro ${Do} syx SysExDump "System-exclusive dump" opens
  !insertmacro ${Do} srx RefaceDxBank "reface DX voice bank" opens
  !insertmacro ${Do} sy1 Dx7Voice "DX7 voice" ""
  !insertmacro ${Do} sr1 RefaceDxVoice "reface DX voice" ""
  !insertmacro ${Do} crg RefaceDxSettings "reface DX system settings" ""
  !insertmacro ${Do} syx_db Dx7Database "DX7 voice database" ""
  !insertmacro ${Do} srx_db RefaceDxDatabase "reface DX voice database" ""
!macroend

; What the user has chosen to open such files with stays; only a kind that nobody has claimed becomes
; the program's own.
!macro AddKind Extension Name Description Opens
  WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}" "" "${Description}"
  WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}\DefaultIcon" "" '"$INSTDIR\tonewright.exe",1'
  !if "${Opens}" != ""
    WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}\shell\open\command" "" '"$INSTDIR\tonewright.exe" "%1"'
    WriteRegStr HKCU "${CLASSES}\.${Extension}\OpenWithProgids" "Tonewright.${Name}" ""
    WriteRegStr HKCU "${CLASSES}\Applications\tonewright.exe\SupportedTypes" ".${Extension}" ""
  !endif
  ReadRegStr $0 HKCR ".${Extension}" ""
  ReadRegStr $1 HKCU "${CLASSES}\.${Extension}" "" ; part of the former, but not everywhere
  ${If} "$0$1" == ""
    WriteRegStr HKCU "${CLASSES}\.${Extension}" "" "Tonewright.${Name}"
  ${EndIf}
!macroend

!macro RemoveKind Extension Name Description Opens
  ReadRegStr $0 HKCU "${CLASSES}\.${Extension}" ""
  ${If} $0 == "Tonewright.${Name}"
    DeleteRegValue HKCU "${CLASSES}\.${Extension}" ""
  ${EndIf}
  DeleteRegValue HKCU "${CLASSES}\.${Extension}\OpenWithProgids" "Tonewright.${Name}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.${Extension}\OpenWithProgids"
  DeleteRegKey /ifempty /ifnovalues HKCU "${CLASSES}\.${Extension}"
  DeleteRegKey HKCU "${CLASSES}\Tonewright.${Name}"
!macroend

!macro TellExplorer
  !define /redef SHCNE_ASSOCCHANGED 0x08000000
  System::Call 'shell32::SHChangeNotify(i ${SHCNE_ASSOCCHANGED}, i 0, p 0, p 0)'
!macroend

; Ends with 2 while the program of $INSTDIR runs: its files could not be replaced.
!macro RefuseWhileRunning
  retry:
  ${If} ${FileExists} "$INSTDIR\tonewright.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\tonewright.exe" a
    ${If} ${Errors}
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Tonewright is running. Please close it first." /SD IDCANCEL IDRETRY retry
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; $R0 becomes "same" when the settings in $INSTDIR are, byte for byte, those in the file FILE.
!macro CompareSettings FILE
  StrCpy $R0 "different"
  ClearErrors
  FileOpen $1 "$INSTDIR\${SETTINGS}" r
  FileOpen $2 "${FILE}" r
  ${IfNot} ${Errors}
    ${Do}
      ClearErrors
      FileReadByte $1 $3
      ${If} ${Errors}
        StrCpy $3 "end"
      ${EndIf}
      ClearErrors
      FileReadByte $2 $4
      ${If} ${Errors}
        StrCpy $4 "end"
      ${EndIf}
      ${If} $3 != $4
        ${ExitDo}
      ${EndIf}
      ${If} $3 == "end"
        StrCpy $R0 "same"
        ${ExitDo}
      ${EndIf}
    ${Loop}
  ${EndIf}
  FileClose $1
  FileClose $2
!macroend

; Removes what an older version has installed, by its own list.
Function RemoveOlderVersion
  ReadRegStr $0 HKCU "${UNINSTALL}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\uninstall.exe"
    ExecWait '"$0\uninstall.exe" /S _?=$0' $1
    ${If} $1 <> 0
      MessageBox MB_OK|MB_ICONSTOP "The version in $0 could not be removed." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    Delete "$0\uninstall.exe"
    RMDir "$0"
  ${EndIf}
FunctionEnd

Section
  SetShellVarContext current
  !insertmacro RefuseWhileRunning
  Call RemoveOlderVersion
  !include "${FILES_TO_INSTALL}"
  SetOutPath "$INSTDIR\Quillbrook"
  ${IfNot} ${FileExists} "$INSTDIR\${SETTINGS}" ; else changed by somebody, or it would be gone
    File "${SETTINGS_FILE}"
  ${EndIf}
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateShortcut "$SMPROGRAMS\Tonewright.lnk" "$INSTDIR\tonewright.exe" "" "$INSTDIR\tonewright.exe" 0 \
    SW_SHOWNORMAL "" "Voice librarian for FM synthesizers"

  WriteRegStr HKCU "${APP_PATH}" "" "$INSTDIR\tonewright.exe"
  WriteRegStr HKCU "${CLASSES}\Applications\tonewright.exe" "FriendlyAppName" "Tonewright"
  WriteRegStr HKCU "${CLASSES}\Applications\tonewright.exe\shell\open\command" "" '"$INSTDIR\tonewright.exe" "%1"'
  !insertmacro EachKind AddKind
  !insertmacro TellExplorer

  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Tonewright"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\tonewright.exe"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Tonewright developers"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section Uninstall
  SetShellVarContext current
  !insertmacro RefuseWhileRunning
  InitPluginsDir
  File "/oname=$PLUGINSDIR\Extras.ini" "${SETTINGS_FILE}"
  !insertmacro CompareSettings "$PLUGINSDIR\Extras.ini"
  ${If} $R0 == "same"
    Delete "$INSTDIR\${SETTINGS}"
  ${EndIf}
  SetOutPath "$TEMP" ; a folder that is the current one stays
  !include "${FILES_TO_REMOVE}"
  RMDir "$INSTDIR\Quillbrook"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Tonewright.lnk"

  !insertmacro EachKind RemoveKind
  DeleteRegKey HKCU "${CLASSES}\Applications\tonewright.exe"
  DeleteRegKey HKCU "${APP_PATH}"
  DeleteRegKey HKCU "${UNINSTALL}"
  ; Keys that others have too, unless the program was the first.
  DeleteRegKey /ifempty HKCU "${CLASSES}\Applications"
  DeleteRegKey /ifempty HKCU "${CLASSES}"
  DeleteRegKey /ifempty HKCU "${APP_PATHS}"
  DeleteRegKey /ifempty HKCU "${UNINSTALLS}"
  !insertmacro TellExplorer
SectionEnd
