' Who may write to the shares of a computer, with names: for each shared folder the accounts that both the share and the
' folder behind it let write.
'
'   ./run --sandbox examples/audit-share.vbs [COMPUTER]
Option Explicit

Const WRITE_DATA = &H2
Const ALLOWED = 0
Const DENIED = 1

Dim root, computer, server, share
Set root = CreateObject("Veldmark2.SystemRoot")
computer = "LANTERN"
If WScript.Arguments.Count > 0 Then computer = WScript.Arguments(0)

Set server = root.GetServer(computer)
WScript.Echo "Shares of " & server.ServerName & " in " & server.DomainName
For Each share In server.GetShares()
  If share.ShareType = 0 Then ShowShare share
Next

Sub ShowShare(share)
  WScript.Echo share.NetworkPath & " (" & share.SharePath & ")"
  Show "  the share lets write:  ", WritersOf(share)
  Show "  the folder lets write: ", WritersOf(share.GetRootFolder())
End Sub

Sub Show(what, names)
  If names = "" Then names = "nobody"
  WScript.Echo what & names
End Sub

' The names of those who may write by an object's list, and of those who may not whatever else is said.
Function WritersOf(object)
  Dim descriptor, entry, names, sign
  names = ""
  On Error Resume Next
  Set descriptor = object.GetSecurityDescriptor()
  If Err.Number <> 0 Then
    WritersOf = "(" & Err.Description & ")"
    Exit Function
  End If
  On Error GoTo 0
  For Each entry In descriptor.GetDACL().GetAces()
    If (entry.AccessMask And WRITE_DATA) <> 0 Then
      sign = ""
      If entry.AceType = DENIED Then sign = "not "
      If entry.AceType = ALLOWED Or entry.AceType = DENIED Then
        names = names & ", " & sign & entry.GetSid().AccountDisplayName
      End If
    End If
  Next
  WritersOf = Mid(names, 3)
End Function
