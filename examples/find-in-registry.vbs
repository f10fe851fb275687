' Values that hold a text, in any case, in a key of the local machine and in all keys below it, with the names of the
' keys and values that have it in them.
'
'   ./run examples/find-in-registry.vbs [KEY [TEXT [COMPUTER]]]
'   ./run --sandbox examples/find-in-registry.vbs "SOFTWARE\Quillmoss" Quillmoss LANTERN
Option Explicit

Const HKEY_LOCAL_MACHINE = &H80000002

Dim root, registry, path, text, found, keys, denied
path = "SOFTWARE\Microsoft\Windows NT\CurrentVersion"
text = "Windows"
If WScript.Arguments.Count > 0 Then path = WScript.Arguments(0)
If WScript.Arguments.Count > 1 Then text = WScript.Arguments(1)

Set root = CreateObject("Veldmark2.SystemRoot")
Set registry = root.GetRegistry()
If WScript.Arguments.Count > 2 Then registry.ConnectToRemoteRegistry WScript.Arguments(2)

found = 0
keys = 0
denied = 0
Search registry.GetRegKey(HKEY_LOCAL_MACHINE, path)
WScript.Echo found & " found in " & keys & " keys, " & denied & " more could not be read"

' What is in one key, then what is in those below it. A key that can't be read doesn't end the search.
Sub Search(key)
  Dim values, value, below, child
  On Error Resume Next
  Set values = key.GetValues()
  If Err.Number = 0 Then Set below = key.GetSubKeys()
  If Err.Number <> 0 Then
    denied = denied + 1
    Exit Sub
  End If
  On Error GoTo 0
  keys = keys + 1
  If Holds(key.Name) Then Show key, ""
  For Each value In values
    If Holds(value.Name) Or Holds(TextOf(value)) Then Show key, ShownName(value) & " = " & TextOf(value)
  Next
  For Each child In below
    Search child
  Next
End Sub

Function Holds(what)
  Holds = InStr(1, what, text, 1) > 0
End Function

Function ShownName(value)
  ShownName = value.Name
  If value.Name = "" Then ShownName = "(default)"
End Function

' Bytes and values of unusual types have no text. Several texts come as one, with a NUL between each two.
Function TextOf(value)
  TextOf = ""
  If Not IsArray(value.Value) Then TextOf = Replace(CStr(value.Value), Chr(0), "; ")
End Function

Sub Show(key, what)
  found = found + 1
  WScript.Echo key.MachineName & "\" & key.FullName & ": " & what
End Sub
