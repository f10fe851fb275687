' The registry of this computer: values of each type stored, listed and read back, and the same by the computer's name.
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
  registry.SaveValue(HKCU, PATH, "texts", 7, "a" & Chr(0) & "b")
Set key = registry.GetRegKey(HKCU, PATH & "\")
For Each value In key.GetValues
  WScript.Echo value.Name & " " & value.ValueType & " " & Shown(value.Value) & ", asked for: " & Shown(key.GetValue(value.Name, 3))
Next
For Each value In key.GetSubKeys
  WScript.Echo value.FullName & ": " & value.DefaultValue
Next
WScript.Echo shell.RegRead("HKCU\" & PATH & "\number")
WScript.Echo key.GetSecurityDescriptor.ParentObjectPath

registry.ConnectToRemoteRegistry root.LocalComputerName
WScript.Echo registry.GetRegKey(HKLM, "SOFTWARE\Microsoft").Name
On Error Resume Next
key.GetValue "none", 1
WScript.Echo Err.Number & " " & Err.Source
' Not every shell can do this.
shell.RegDelete "HKCU\" & PATH & "\Below\"
shell.RegDelete "HKCU\" & PATH & "\"

Function Shown(what)
  Shown = "bytes"
  If Not IsArray(what) Then Shown = Replace(CStr(what), Chr(0), "\0")
End Function
