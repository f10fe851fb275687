' Errors and warnings of a computer's event logs, or of a saved log: when, where from, what, who, and the first line of
' the message.
'
'   ./run --sandbox examples/recent-errors.vbs [COMPUTER | FILE.evt]
'
' A saved log is a file of this computer: C:\Windows\Logs\ledger-2023.evt is one on the sample estate. It doesn't tell
' which log it was, and so whose sources' message files to ask: its messages come as their numbers and strings.
Option Explicit

Const ERROR_TYPE = 1
Const WARNING_TYPE = 2

Dim root, server, wanted, log
Set root = CreateObject("Veldmark2.SystemRoot")
wanted = root.LocalComputerName
If WScript.Arguments.Count > 0 Then wanted = WScript.Arguments(0)

If LCase(Right(wanted, 4)) = ".evt" Then
  Set server = root.GetServer(root.LocalComputerName)
  ShowEntries wanted, server.GetEventLogEntriesFromFile(wanted)
Else
  Set server = root.GetServer(wanted)
  For Each log In server.GetEventLogs()
    ShowLog log
  Next
End If

' A log that can't be read says why.
Sub ShowLog(log)
  Dim entries
  On Error Resume Next
  Set entries = log.GetEventLogEntries()
  If Err.Number <> 0 Then
    WScript.Echo log.LogName & ": " & Err.Description
    Exit Sub
  End If
  On Error GoTo 0
  AskEachSource entries
  ShowEntries log.LogName, log.GetEventLogEntries()
End Sub

' The first message of a source whose file another one has loaded before comes without its inserts.
Sub AskEachSource(entries)
  Dim asked, entry, message
  Set asked = CreateObject("Scripting.Dictionary")
  For Each entry In entries
    If Not asked.Exists(entry.SourceName) Then message = entry.EventMessage
    asked(entry.SourceName) = True
  Next
End Sub

Sub ShowEntries(title, entries)
  Dim entry
  WScript.Echo title & ": " & entries.Count & " entries"
  For Each entry In entries
    If entry.EventType = ERROR_TYPE Or entry.EventType = WARNING_TYPE Then
      WScript.Echo "  " & Column(entry.TimeGenerated, 22) & Column(entry.EventTypeDescription, 9) & _
          Column(entry.SourceName, 25) & Column(entry.EventCode, 7) & Column(UserOf(entry), 22) & _
          FirstLine(entry.EventMessage)
    End If
  Next
End Sub

Function UserOf(entry)
  UserOf = "-"
  If Not entry.Sid Is Nothing Then UserOf = entry.Sid.AccountDisplayName
End Function

Function Column(value, width)
  Column = CStr(value)
  If Len(Column) < width Then Column = Column & Space(width - Len(Column))
  Column = Column & " "
End Function

Function FirstLine(message)
  Dim position
  position = InStr(message, vbCrLf)
  FirstLine = message
  If position > 0 Then FirstLine = Left(message, position - 1)
End Function
