' Lists the scheduled tasks of a computer with their next times, then makes one and removes it:
'
'   ./run examples/tasks.vbs [SERVER]
'   ./run --sandbox examples/estate.json examples/tasks.vbs LANTERN
Option Explicit

Const TT_Daily = 1

Dim root, server, name
Set root = CreateObject("Veldmark2.SystemRoot")
name = root.LocalComputerName
If WScript.Arguments.Count > 0 Then name = WScript.Arguments(0)
Set server = root.GetServer(name)

Sub List(title)
  Dim task, trigger, times
  WScript.Echo title
  For Each task In server.GetTasks()
    times = ""
    If task.NextRunTime > DateSerial(2000, 1, 1) Then times = ", next " & task.NextRunTime
    WScript.Echo "  " & task.Name & times
    For Each trigger In task.GetTriggers()
      WScript.Echo "    " & trigger.Text
    Next
  Next
End Sub

List "Tasks of " & server.ServerName

Dim task, trigger
Set task = server.CreateTask("Veldmark2 sample")
task.ApplicationName = "C:\Windows\notepad.exe"
task.Comment = "Made by a sample"
Set trigger = task.CreateTrigger()
trigger.TriggerType = TT_Daily
trigger.DaysInterval = 2
trigger.BeginDate = DateSerial(2024, 3, 6)
trigger.StartHour = 9
trigger.StartMinute = 5
trigger.Flags = 0
trigger.Save
task.Save
task.Refresh
WScript.Echo "Made " & task.Name & " by " & task.Creator & ": " & trigger.Text

task.Delete
On Error Resume Next
task.Refresh
WScript.Echo "Removed: " & Hex(Err.Number)
