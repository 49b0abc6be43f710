; The installer of Tonewright for Windows: for one user, without an administrator. It takes the
; program from the folder SOURCE by lists, which `build` writes into the folder LISTS:
;   install.nsh     a CreateDirectory for each folder, a File for each file that nobody but us changes
;   remove.nsh      a Delete for each of these files
;   folders.nsh     an RMDir for each folder, the inner ones first
;   changeable.nsh  the macro EachChangeable, a row for each file that its user may change
;   programs.nsh    the macro EachProgramFile, a row for each program and each library
; Also given: VERSION, VERSION_NUMBERS (four, with dots), COPYRIGHT, KILOBYTES, ICON, OUTPUT.
; In silent mode (/S) nothing is asked; /D=FOLDER, as the last argument, chooses the folder. The status
; is 0, or 2 when nothing was installed; then something says why, unless it is silent.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
SetDateSave off
AllowSkipFiles off
ManifestDPIAware true
ManifestSupportedOS Win10
RequestExecutionLevel user

!include MUI2.nsh
!include LogicLib.nsh
!include WinVer.nsh

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

!include "${LISTS}/changeable.nsh"
!include "${LISTS}/programs.nsh"

InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"

VIProductVersion "${VERSION_NUMBERS}"
VIFileVersion "${VERSION_NUMBERS}"
VIAddVersionKey /LANG=0 "ProductName" "Tonewright"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileDescription" "Installs Tonewright"
VIAddVersionKey /LANG=0 "CompanyName" "Tonewright developers"
VIAddVersionKey /LANG=0 "LegalCopyright" "${COPYRIGHT}"

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

; $1 becomes "there" when the class NAME is registered, else "missing".
!macro FindClass Name
  StrCpy $1 "missing"
  ${If} ${Name} != ""
    ClearErrors
    EnumRegKey $2 HKCR "${Name}" 0
    ${If} ${Errors}
      ClearErrors
      EnumRegKey $2 HKCU "${CLASSES}\${Name}" 0
    ${EndIf}
    ${IfNot} ${Errors}
      StrCpy $1 "there"
    ${EndIf}
  ${EndIf}
!macroend

; What the user has chosen to open such files with stays; only a kind that nobody has claimed, or whose
; owner is gone, becomes the program's own. A kind that no double click opens is not offered to be
; opened by the program: it has no command and stands in none of the lists for "Open with".
!macro AddKind Extension Name Description Opens
  WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}" "" "${Description}"
  WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}\DefaultIcon" "" '"$INSTDIR\tonewright.exe",1'
  !if "${Opens}" != ""
    WriteRegStr HKCU "${CLASSES}\Tonewright.${Name}\shell\open\command" "" '"$INSTDIR\tonewright.exe" "%1"'
    WriteRegStr HKCU "${CLASSES}\.${Extension}\OpenWithProgids" "Tonewright.${Name}" ""
    WriteRegStr HKCU "${CLASSES}\Applications\tonewright.exe\SupportedTypes" ".${Extension}" ""
  !endif
  ReadRegStr $0 HKCR ".${Extension}" ""
  ${If} $0 == ""
    ReadRegStr $0 HKCU "${CLASSES}\.${Extension}" "" ; part of the former, but not everywhere
  ${EndIf}
  !insertmacro FindClass $0
  ${If} $1 == "missing"
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

; Says WORDS and ends with 2.
!macro Refuse Words
  MessageBox MB_OK|MB_ICONSTOP "${Words}" /SD IDOK
  SetErrorLevel 2
  Quit
!macroend

; Ends with 2 while the file is in use, as a program that runs or a library of one: what stands in the
; folder could be replaced or removed in part only.
!macro RefuseWhileUsed Folder Name
  ${If} ${FileExists} "${Folder}\${Name}"
    ${Do}
      ClearErrors
      FileOpen $1 "${Folder}\${Name}" a
      ${IfNot} ${Errors}
        FileClose $1
        ${ExitDo}
      ${EndIf}
      ${IfNot} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Tonewright is running (${Folder}\${Name} is in use). Please close it first." /SD IDCANCEL IDRETRY`
        SetErrorLevel 2
        Quit
      ${EndIf}
    ${Loop}
  ${EndIf}
!macroend

Function .onInit
  ${IfNot} ${AtLeastBuild} 18362
    !insertmacro Refuse "Tonewright needs Windows 10, version 1903, or a newer one."
  ${EndIf}
FunctionEnd

; Ends with 2 when the folder cannot be written to.
Function RefuseUnwritable
  ClearErrors
  CreateDirectory "$INSTDIR"
  GetTempFileName $1 "$INSTDIR"
  ${If} ${Errors}
    !insertmacro Refuse "The folder $INSTDIR cannot be written to."
  ${EndIf}
  Delete $1
FunctionEnd

; Removes what an older version has installed into the folder $R0, by its own lists, and takes the
; settings for all users along if somebody has changed them.
Function RemoveOlderVersion
  ExecWait '"$R0\uninstall.exe" /S _?=$R0' $1
  ${If} $1 <> 0
    !insertmacro Refuse "The version in $R0 could not be removed."
  ${EndIf}
  Delete "$R0\uninstall.exe"
  ${IfNot} ${FileExists} "$INSTDIR\${SETTINGS}"
  ${AndIf} ${FileExists} "$R0\${SETTINGS}"
    CreateDirectory "$INSTDIR\Quillbrook"
    Rename "$R0\${SETTINGS}" "$INSTDIR\${SETTINGS}"
    RMDir "$R0\Quillbrook"
  ${EndIf}
  RMDir "$R0"
FunctionEnd

; A file that is there is one that somebody has changed, or it would be gone.
!macro AddUnlessThere Name Source
  ${IfNot} ${FileExists} "$INSTDIR\${Name}"
    File "/oname=$INSTDIR\${Name}" "${Source}"
  ${EndIf}
!macroend

!macro RemoveUnlessChanged Name Source
  File "/oname=$PLUGINSDIR\installed" "${Source}"
  StrCpy $R0 "$INSTDIR\${Name}"
  Call un.RemoveIfAsInstalled
!macroend

; Removes the file $R0 when it is, byte for byte, the file "installed" in the folder of plug-ins.
Function un.RemoveIfAsInstalled
  StrCpy $R1 "different"
  ClearErrors
  FileOpen $1 "$PLUGINSDIR\installed" r
  FileOpen $2 $R0 r
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
        StrCpy $R1 "same"
        ${ExitDo}
      ${EndIf}
    ${Loop}
    FileClose $2
  ${EndIf}
  FileClose $1
  ${If} $R1 == "same"
    Delete $R0
  ${EndIf}
FunctionEnd

Section
  SetShellVarContext current
  ReadRegStr $R0 HKCU "${UNINSTALL}" "InstallLocation"
  !insertmacro EachProgramFile RefuseWhileUsed "$INSTDIR"
  ${If} $R0 != ""
  ${AndIf} ${FileExists} "$R0\uninstall.exe"
    !insertmacro EachProgramFile RefuseWhileUsed "$R0"
    Call RefuseUnwritable
    Call RemoveOlderVersion
  ${EndIf}
  ClearErrors
  !include "${LISTS}/install.nsh"
  !insertmacro EachChangeable AddUnlessThere
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${If} ${Errors}
    !insertmacro Refuse "Not everything could be written to $INSTDIR."
  ${EndIf}

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
  !insertmacro EachProgramFile RefuseWhileUsed "$INSTDIR"
  SetOutPath "$TEMP" ; a folder that is the current one stays
  ClearErrors
  !include "${LISTS}/remove.nsh"
  ${If} ${Errors}
    !insertmacro Refuse "Not everything in $INSTDIR could be removed."
  ${EndIf}
  InitPluginsDir
  !insertmacro EachChangeable RemoveUnlessChanged
  !include "${LISTS}/folders.nsh"
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
