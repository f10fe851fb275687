' What happens by itself where the estate's clock runs: a service takes its time, a task runs when it is due, a timer
' tells of it, and logs are written.
Option Explicit

Dim root, server, service, task, beat, told, points, waits
Set root = CreateObject("Veldmark2.SystemRoot")
Set server = root.GetServer(root.LocalComputerName)
Set task = server.GetTasks().Item(1)
Beat_Timer
ShowLog "Application"

Set service = server.GetService("Ledger")
points = 0
WScript.ConnectObject root.GetStatusObject, "Status_"
service.Start
WScript.DisconnectObject root.GetStatusObject
WScript.Echo service.DisplayName & " runs: " & service.Running & ", not at once: " & (points > 0)

Set beat = CreateObject("Veldmark2.CTimer")
WScript.ConnectObject beat, "Beat_"
beat.Interval = 50
beat.Enabled = True
For waits = 1 To 400
  If beat.Enabled Then WScript.Sleep 50
Next
WScript.Echo "the timer told of it: " & (Not beat.Enabled)
ShowLog "Application"
ShowLog "System"

Sub Status_Status(text)
  If Left(text, 15) = "Last Checkpoint" Then points = points + 1
End Sub

Sub Beat_Timer()
  Dim state
  task.Refresh
  state = "task: status " & task.Status & ", last run " & task.LastRunTime & ", exit code " & task.ExitCode
  If state <> told Then WScript.Echo state
  told = state
  If task.ExitCode = 3 Then beat.Enabled = False
End Sub

Sub ShowLog(name)
  Dim entry, strings
  For Each entry In server.GetEventLogEntries(name)
    ' Without a message file, they stand behind the first line.
    strings = Mid(entry.EventMessage, InStr(entry.EventMessage, vbCrLf) + 2)
    WScript.Echo name & " " & entry.RecordNumber & ": " & entry.EventCode & " of " & entry.SourceName & ", " & _
        Trim(Replace(strings, vbCrLf, " "))
  Next
End Sub
