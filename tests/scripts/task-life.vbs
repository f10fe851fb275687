' A task of this computer: made, saved, listed, read again, changed and removed.
Option Explicit

Const TT_Daily = 1
Const TF_HasEndDate = 1

Dim root, server, task, trigger, found
Set root = CreateObject("Veldmark2.SystemRoot")
Set server = root.GetServer(root.LocalComputerName)

Set task = server.CreateTask("Veldmark2 test")
task.ApplicationName = "C:\Windows\notepad.exe"
task.Comment = "One of the tests"
task.MaxRunTime = 60000
WScript.Echo "before it is saved: " & (Named("Veldmark2 test") Is Nothing)
Set trigger = task.CreateTrigger()
trigger.TriggerType = TT_Daily
trigger.DaysInterval = 3
trigger.BeginDate = DateSerial(2024, 3, 6)
trigger.EndDate = DateSerial(2024, 12, 24)
trigger.Flags = TF_HasEndDate
trigger.StartHour = 21
trigger.StartMinute = 30
trigger.Save
task.CreateTrigger().Save
task.Save

Set found = Named("Veldmark2 test")
WScript.Echo found.ApplicationName & ": " & found.Comment & ", " & found.MaxRunTime & " ms, by " & found.Creator
Set trigger = found.GetTriggers().Item(1)
WScript.Echo trigger.Text & ": " & trigger.TriggerType & " " & trigger.DaysInterval & " to " & trigger.EndDate
found.Comment = "Changed"
found.GetTriggers().Item(1).Delete
found.Save
found.Refresh
WScript.Echo found.Comment & ", triggers left: " & found.GetTriggers().Count

On Error Resume Next
server.CreateTask "Veldmark2 test"
WScript.Echo "a second of its name: " & Hex(Err.Number)
On Error Goto 0
found.Delete
WScript.Echo "removed: " & (Named("Veldmark2 test") Is Nothing)

Function Named(name)
  Dim each_task
  Set Named = Nothing
  For Each each_task In server.GetTasks()
    If each_task.Name = name Then Set Named = each_task
  Next
End Function
