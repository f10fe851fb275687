' A task of this computer: made, saved, listed, read again, changed, copied and removed.
Option Explicit

Const TT_Daily = 1
Const TT_Weekly = 2
Const TF_HasEndDate = 1

Dim root, server, task, trigger, found, one
Set root = CreateObject("Veldmark2.SystemRoot")
Set server = root.GetServer(root.LocalComputerName)

Function Named(name)
  Dim each_task
  Set Named = Nothing
  For Each each_task In server.GetTasks()
    If each_task.Name = name Then Set Named = each_task
  Next
End Function

Sub Try(what)
  WScript.Echo what & ": " & Hex(Err.Number)
  Err.Clear
End Sub

Set task = server.CreateTask("Veldmark2 test")
task.ApplicationName = "C:\Windows\notepad.exe"
task.CommandLine = "/p"
task.WorkingDirectory = "C:\Windows"
task.Comment = "One of the tests"
task.MaxRunTime = 60000
WScript.Echo "before it is saved: " & task.Name & "|" & task.Creator & "|" & (Named("Veldmark2 test") Is Nothing)
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
WScript.Echo found.ApplicationName & " " & found.CommandLine & " in " & found.WorkingDirectory & ": " & found.Comment & _
    ", " & found.MaxRunTime & " ms, by " & found.Creator
Set one = found.GetTriggers().Item(1)
WScript.Echo one.Text & ": " & one.TriggerType & " " & one.DaysInterval & " " & one.StartHour & ":" & one.StartMinute & _
    " from " & one.BeginDate & " to " & one.EndDate

On Error Resume Next
one.Day = 3
Try "a day of a daily one"
WScript.Echo one.WeeksInterval
Try "reading weeks"
server.CreateTask "Veldmark2 test"
Try "a second of its name"
server.CreateTaskObject().Save
Try "saving one without a task"
On Error Goto 0

one.TriggerType = TT_Weekly
one.WeeksInterval = 2
one.DaysOfTheWeek = 2
one.Save
found.Comment = "Changed"
found.Save
found.Refresh
WScript.Echo found.Name & ": " & found.Comment & ", " & found.GetTriggers().Count & " triggers"
found.GetTriggers().Item(1).Delete
found.Save
WScript.Echo "triggers left: " & Named("Veldmark2 test").GetTriggers().Count

found.Delete
WScript.Echo "removed: " & (Named("Veldmark2 test") Is Nothing)
On Error Resume Next
found.Refresh
Try "reading it"
