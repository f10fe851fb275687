' The registry of the real platform: values of each type stored, listed and read back, on this computer and by its name.
Option Explicit

Const HKCU = &H80000001
Const HKLM = &H80000002
Const PATH = "Software\Veldmark2 registry test"

Dim root, shell, registry, key, value
Set root = CreateObject("Veldmark2.SystemRoot")
Set shell = CreateObject("WScript.Shell")
Set registry = root.GetRegistry
shell.RegWrite "HKCU\" & PATH & "\Below\", "the default"

WScript.Echo registry.SaveValue(HKCU, PATH, "text", 1, "plain") & registry.SaveValue(HKCU, PATH, "wide", 2, "%SystemRoot%\x") & _
  registry.SaveValue(HKCU, PATH, "bytes", 3, Array(1, 2, 3)) & registry.SaveValue(HKCU, PATH, "number", 4, 258) & _
  registry.SaveValue(HKCU, PATH, "big", 5, 258) & registry.SaveValue(HKCU, PATH, "texts", 7, "a" & Chr(0) & "b") & _
  registry.SaveValue(HKCU, PATH, "link", 6, "nothing is written")
Set key = registry.GetRegKey(HKCU, PATH & "\")
WScript.Echo key.Name & "|" & key.FullName & "|" & key.DefaultValue & "|" & key.MachineName
For Each value In key.GetValues
  WScript.Echo value.Name & " " & value.ValueType & " " & Shown(value.Value) & ", asked for: " & Shown(key.GetValue(value.Name, 3))
Next
For Each value In key.GetSubKeys
  WScript.Echo value.FullName & ": " & value.DefaultValue
Next
WScript.Echo shell.RegRead("HKCU\" & PATH & "\number")
Dim security
Set security = key.GetSecurityDescriptor
WScript.Echo security.ParentObjectPath & " " & security.GetOwnerSid.IsValid & " " & (security.GetDACL.GetAces.Count > 0)

Dim remote
Set remote = root.GetRegistry
remote.ConnectToRemoteRegistry shell.ExpandEnvironmentStrings("%COMPUTERNAME%")
WScript.Echo remote.GetRegKey(HKLM, "SOFTWARE\Microsoft").Name & " " & (remote.GetRegKeys(HKLM).Count > 0)
Fail "remote.GetRegKey(HKCU, PATH)"
Fail "registry.GetRegKey(HKLM, none)"
Fail "key.GetValue(none)"
' Not every shell can do this.
On Error Resume Next
shell.RegDelete "HKCU\" & PATH & "\Below\"
shell.RegDelete "HKCU\" & PATH & "\"

Sub Fail(what)
  Dim x
  On Error Resume Next
  Select Case what
    Case "remote.GetRegKey(HKCU, PATH)": Set x = remote.GetRegKey(HKCU, PATH)
    Case "registry.GetRegKey(HKLM, none)": Set x = registry.GetRegKey(HKLM, "SOFTWARE\No such key")
    Case "key.GetValue(none)": x = key.GetValue("none", 1)
  End Select
  WScript.Echo what & ": " & Err.Number & " " & Err.Source
End Sub

' An array of bytes can be passed on, and by that be told.
Function Shown(what)
  If IsArray(what) Then
    Shown = "bytes, " & registry.SaveValue(HKCU, PATH, "bytes", 3, what)
  Else
    Shown = Replace(CStr(what), Chr(0), "\0")
  End If
End Function
