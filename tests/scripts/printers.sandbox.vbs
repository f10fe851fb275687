' The printers of two computers on the simulated estate, by list and by event, and who may use one.
Option Explicit

Dim root, server, printer, found, entry
Set root = CreateObject("Veldmark2.SystemRoot")
For Each server In Array("HARBOUR", "LANTERN", "BEACON")
  WScript.Echo server & ": " & root.GetServer(server).GetPrinters().Count
Next

Set server = root.GetServer("LANTERN")
For Each printer In server.GetPrinters()
  WScript.Echo printer.PrinterName & " = " & printer.Description & " on " & printer.ServerName & ", from " & _
    CLng(printer.StartTime) & " to " & CLng(printer.UntilTime) & ", " & printer.Attributes & " " & printer.Status
Next

WScript.ConnectObject server, "Walk_"
server.AsyncFetch = True
Set found = server.GetPrinters()
WScript.Echo "listed as well: " & found.Count & ", on """ & found.Item(1).ServerName & """"
server.AsyncFetch = False
WScript.DisconnectObject server

On Error Resume Next
found.Item(1).GetSecurityDescriptor
WScript.Echo Err.Number
Err.Clear
On Error Goto 0
Set printer = server.GetPrinters().Item("Proof press")
For Each entry In printer.GetSecurityDescriptor().GetDACL().GetAces()
  WScript.Echo entry.GetSid().SidText & " " & entry.PermissionsString
Next

Sub Walk_PrinterFound(printer, cancel)
  WScript.Echo "found " & printer.PrinterName
  cancel = (printer.PrinterName = "Proof press")
End Sub
