' Services of this computer: one is installed, started, paused, changed, stopped and removed, others refuse or depend on it.
Option Explicit

Const DEMAND = 3
Const DISABLED = 4
Const OWN_PROCESS = 16

Dim root, server, program, one, other
Set root = CreateObject("Veldmark2.SystemRoot")
Set server = CreateObject("Veldmark2.CServer")
server.ServerName = root.LocalComputerName
program = Clone(WScript.ScriptFullName) & "\build\windows-x64\service_program.exe"
If Not root.FileExists(program) Then program = Replace(program, "windows-x64", "windows-x86")

CleanUp
Set one = Made("VeldmarkTestOne", "pausable slow", "")
Set other = Made("VeldmarkTestTwo", "stubborn", "VeldmarkTestOne")
Show "installed"

Dim points
points = 0
WScript.ConnectObject root.GetStatusObject, "Status_"
one.Start
WScript.DisconnectObject root.GetStatusObject
WScript.Echo "checkpoints were told: " & (points > 1)
Show "started"
one.SetServiceControl 2
Show "paused"
one.SetServiceControl 3
Show "continued"

Listed "running", server.GetServices()
Listed "all", server.GetServices(48, 3)
Listed "two depends on", other.GetMyDependentServices
Listed "depend on one", one.GetServicesDependentOnMe
Listed "depend on two", other.GetServicesDependentOnMe(3)

other.Start
Fails "a stubborn one stops", other, 1
other.SetServiceControl 128
WaitFor "VeldmarkTestTwo", 1

Dim fresh
Set fresh = server.GetService("VeldmarkTestOne")
fresh.StartType = DISABLED
fresh.DisplayName = "Another name"
fresh.SaveServiceInfo
fresh.Refresh
WScript.Echo "saved: " & fresh.DisplayName & ", " & fresh.StartType
one.SetServiceControl 1
Show "stopped"
On Error Resume Next
one.Start
WScript.Echo "a disabled one starts: " & Err.Number
Err.Clear
one.Install
WScript.Echo "a second of its name: " & Err.Number
Err.Clear
server.GetService("VeldmarkTestNone").Start
WScript.Echo "one that isn't there: " & Err.Number & " " & server.GetService("VeldmarkTestNone").DisplayName
Err.Clear
On Error GoTo 0
WScript.Echo "its descriptor: " & one.GetSecurityDescriptor.ParentObjectType & ", revision " & one.GetSecurityDescriptor.Revision

other.Remove
one.Remove
' The manager lets go of a service when its program has ended.
Dim tries
For tries = 1 To 100
  If TestServices(server.GetServices(48, 3)) = "" Then Exit For
  WScript.Sleep 50
Next
Listed "left", server.GetServices(48, 3)

Function Made(name, words, dependencies)
  Set Made = server.CreateServiceObject
  Made.ServiceName = name
  Made.DisplayName = "Test service of " & name
  Made.ServiceType = OWN_PROCESS
  Made.StartType = DEMAND
  Made.BinaryPathName = """" & program & """ " & name & " " & words
  Made.Dependencies = dependencies
  Made.Install
  Made.Refresh
End Function

Sub Show(what)
  one.Refresh
  WScript.Echo what & ": " & one.CurrentState & " " & one.StartType & " " & one.AcceptStop & " " & one.AcceptPauseContinue
End Sub

Function TestServices(services)
  Dim service
  TestServices = ""
  For Each service In services
    If Left(service.ServiceName, 12) = "VeldmarkTest" Then TestServices = TestServices & " " & service.ServiceName
  Next
End Function

Sub Listed(what, services)
  WScript.Echo what & ":" & TestServices(services)
End Sub

Sub Fails(what, service, control)
  On Error Resume Next
  service.SetServiceControl control
  WScript.Echo what & ": " & Err.Number
End Sub

Sub WaitFor(name, state)
  Dim tries
  For tries = 1 To 100
    If server.GetService(name).CurrentState = state Then Exit Sub
    WScript.Sleep 50
  Next
  WScript.Echo name & " isn't in state " & state
End Sub

' What an earlier run may have left.
Sub CleanUp
  On Error Resume Next
  server.GetService("VeldmarkTestTwo").SetServiceControl 128
  server.GetService("VeldmarkTestOne").SetServiceControl 1
  server.GetService("VeldmarkTestTwo").Remove
  server.GetService("VeldmarkTestOne").Remove
End Sub

Sub Status_Status(text)
  If Left(text, 15) = "Last Checkpoint" Then points = points + 1
End Sub

' The folder two levels above a script's.
Function Clone(path)
  Dim level
  Clone = path
  For level = 1 To 3
    Clone = Left(Clone, InStrRev(Clone, "\") - 1)
  Next
End Function
