' Services of this computer: one is installed, started, paused, changed, stopped and removed, another depends on it and refuses.
Option Explicit

Const DEMAND = 3
Const DISABLED = 4
Const OWN_PROCESS = 16

Dim root, server, program, one, other, points
Set root = CreateObject("Veldmark2.SystemRoot")
Set server = root.GetServer(root.LocalComputerName)
program = Replace(WScript.ScriptFullName, "tests\scripts\services.vbs", "build\windows-x64\service_program.exe")
If Not root.FileExists(program) Then program = Replace(program, "windows-x64", "windows-x86")

TakeAway
Set one = Made("VeldmarkTestOne", "pausable slow", "")
Set other = Made("VeldmarkTestTwo", "stubborn", "VeldmarkTestOne")
Show "installed"
points = 0
WScript.ConnectObject root.GetStatusObject, "Status_"
one.Start
WScript.DisconnectObject root.GetStatusObject
Show "started, checkpoints were told: " & (points > 1)
one.SetServiceControl 2
Show "paused"
one.SetServiceControl 3
Show "continued"

WScript.Echo "running:" & TestServices(server.GetServices())
WScript.Echo "two depends on:" & TestServices(other.GetMyDependentServices)
WScript.Echo "depend on one:" & TestServices(one.GetServicesDependentOnMe)
other.Start
On Error Resume Next
other.SetServiceControl 1
WScript.Echo "a stubborn one stops: " & Err.Number
On Error Goto 0

one.StartType = DISABLED
one.DisplayName = "Another name"
one.SaveServiceInfo
other.SetServiceControl 128
Do Until other.Stopped
  WScript.Sleep 50
  other.Refresh
Loop
one.SetServiceControl 1
Show "stopped"
On Error Resume Next
one.Start
WScript.Echo one.DisplayName & " starts: " & Err.Number
On Error Goto 0
TakeAway
WScript.Echo "left:" & TestServices(server.GetServices(48, 3))

' Whatever is there, be it of an earlier run.
Sub TakeAway
  Dim name, tries
  On Error Resume Next
  For Each name In Array("VeldmarkTestTwo", "VeldmarkTestOne")
    server.GetService(name).SetServiceControl 128
    server.GetService(name).Remove
  Next
  ' The manager lets go of a service when its program has ended.
  For tries = 1 To 100
    If TestServices(server.GetServices(48, 3)) = "" Then Exit For
    WScript.Sleep 50
  Next
End Sub

Function Made(name, words, dependencies)
  Set Made = server.CreateServiceObject
  Made.ServiceName = name
  Made.DisplayName = "Test service of " & name
  Made.ServiceType = OWN_PROCESS
  Made.StartType = DEMAND
  Made.BinaryPathName = """" & program & """ " & name & " " & words
  Made.Dependencies = dependencies
  Made.Install
End Function

Sub Show(what)
  one.Refresh
  WScript.Echo what & ": " & one.CurrentState & " " & one.StartType & " " & one.AcceptStop & " " & one.AcceptPauseContinue
End Sub

Function TestServices(services)
  Dim service
  For Each service In services
    If Left(service.ServiceName, 12) = "VeldmarkTest" Then TestServices = TestServices & " " & service.ServiceName
  Next
End Function

Sub Status_Status(text)
  If Left(text, 15) = "Last Checkpoint" Then points = points + 1
End Sub
