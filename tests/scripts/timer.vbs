' A timer's events while the script waits, and times of files that move with the clock.
Option Explicit

Dim root, timer, home, beats, waits
Set root = CreateObject("Veldmark2.SystemRoot")
Set timer = CreateObject("Veldmark2.CTimer")
WScript.ConnectObject timer, "Timer_"
beats = 0
timer.Interval = 20
WScript.Sleep 100
WScript.Echo "before it runs: " & beats
timer.Enabled = True
WaitForBeats 3
WScript.Sleep 100
WScript.Echo "until it stopped itself: " & beats & " " & timer.Enabled
WScript.DisconnectObject timer
timer.Enabled = True
WScript.Sleep 100
timer.Enabled = False
WScript.Echo "unheard: " & beats

home = "C:\Veldmark2 timer test"
On Error Resume Next
root.GetFolder(home).Delete True, True
On Error Goto 0
root.CreateFolder home
root.WriteTextFile home & "\first.txt", "1"
WScript.Sleep 1100
root.WriteTextFile home & "\later.txt", "2"
WScript.Echo "time passes: " & (root.GetFile(home & "\first.txt").DateLastModified < _
    root.GetFile(home & "\later.txt").DateLastModified)
root.GetFolder(home).Delete True, True

Sub WaitForBeats(wanted)
  For waits = 1 To 1000
    If beats >= wanted Then Exit Sub
    WScript.Sleep 10
  Next
End Sub

Sub Timer_Timer()
  beats = beats + 1
  If beats = 3 Then timer.Enabled = False
End Sub
