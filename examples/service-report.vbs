' The services that should run and don't, on several computers, and the restart of one with its progress.
'
'   ./run --sandbox examples/service-report.vbs [COMPUTER... [\\COMPUTER\SERVICE]]
'
' Without arguments: this computer and its fellows LANTERN and BEACON, where they can be reached, and the restart of
' \\LANTERN\Quillmoss.
Option Explicit

Const ALL_PROGRAMS = 48
Const ALL_STATES = 3
Const START_AUTOMATICALLY = 2
Const SERVICE_STOP = 1

Dim root, computers, to_restart, argument, computer
Set root = CreateObject("Veldmark2.SystemRoot")
to_restart = ""
computers = ""
For Each argument In WScript.Arguments
  If Left(argument, 2) = "\\" Then
    to_restart = argument
  Else
    computers = computers & " " & argument
  End If
Next
If computers = "" Then
  computers = " " & root.LocalComputerName & " LANTERN BEACON"
  If to_restart = "" Then to_restart = "\\LANTERN\Quillmoss"
End If

WScript.Echo Column("Computer", 12) & Column("Service", 14) & Column("Display name", 28) & Column("State", 10) & "Exit code"
For Each computer In Split(Mid(computers, 2), " ")
  Report computer
Next
If to_restart <> "" Then Restart to_restart

Sub Report(name)
  Dim server, services, service, counted
  On Error Resume Next
  Set server = root.GetServer(name)
  If Err.Number = 0 Then Set services = server.GetServices(ALL_PROGRAMS, ALL_STATES)
  If Err.Number <> 0 Then
    WScript.Echo Column(name, 12) & "(" & Err.Description & ")"
    Exit Sub
  End If
  On Error GoTo 0
  counted = 0
  For Each service In services
    If service.StartType = START_AUTOMATICALLY And Not service.Running Then
      WScript.Echo Column(server.ServerName, 12) & Column(service.ServiceName, 14) & _
        Column(service.DisplayName, 28) & Column(StateName(service.CurrentState), 10) & ExitCode(service)
      counted = counted + 1
    End If
  Next
  If counted = 0 Then WScript.Echo Column(server.ServerName, 12) & "everything runs that should, of " & services.Count & " services"
End Sub

Function ExitCode(service)
  ExitCode = service.Win32ExitCode
  If ExitCode = 1066 Then ExitCode = ExitCode & " (" & service.ServiceSpecificExitCode & ")"
End Function

Sub Restart(path)
  Dim names, server, service
  names = Split(Mid(path, 3), "\")
  On Error Resume Next
  Set server = root.GetServer(names(0))
  If Err.Number <> 0 Then
    WScript.Echo path & " can't be restarted: " & Err.Description
    Exit Sub
  End If
  Set service = server.GetService(names(1))
  WScript.ConnectObject root.GetStatusObject, "Progress_"
  If Not service.Stopped Then
    WScript.Echo "Stopping " & path
    service.SetServiceControl SERVICE_STOP
  End If
  If Err.Number = 0 Then
    WScript.Echo "Starting " & path
    service.Start
  End If
  WScript.DisconnectObject root.GetStatusObject
  If Err.Number <> 0 Then
    WScript.Echo "It failed: " & Err.Description & " (" & Err.Number & ")"
  Else
    WScript.Echo path & " is " & StateName(service.CurrentState)
  End If
End Sub

Sub Progress_Status(text)
  If Left(text, 15) = "Last Checkpoint" Then WScript.Echo "  " & text
End Sub

Function StateName(state)
  Dim names
  names = Array("unknown", "stopped", "starting", "stopping", "running", "resuming", "pausing", "paused")
  StateName = names(state)
End Function

Function Column(text, width)
  Column = Left(text & Space(width), width)
End Function
