' A timer's events while the script waits.
Option Explicit

Dim timer, beats, waits
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
