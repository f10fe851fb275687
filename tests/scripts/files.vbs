' Whole files of this computer written, read back and copied, and the drive that they lie on.
Option Explicit

Dim root, home, data, drive
Set root = CreateObject("Veldmark2.SystemRoot")
home = "C:\Veldmark2 file test"
On Error Resume Next
root.GetFolder(home).Delete True, True
On Error Goto 0
root.CreateFolder home

root.WriteTextFile home & "\wide.txt", "wide é", True
WScript.Echo "wide: " & root.ReadTextFile(home & "\wide.txt") & " " & root.ReadTextFileAPI(home & "\wide.txt")
root.WriteTextFile home & "\plain.txt", "ten ASCII!"
root.WriteTextFile home & "\plain.txt", "TEN"
root.CopyFile home & "\plain.txt", home & "\New\copy.txt", False
WScript.Echo "copied: " & root.ReadTextFile(home & "\New\copy.txt") & " " & root.FileExists(home & "\New\co*.txt")
WScript.Echo "bytes: " & root.WriteBinaryFileAPI(home & "\bytes", Array(0, 1, 255))
data = root.ReadBinaryFileAPI(home & "\bytes")
WScript.Echo "type " & VarType(data) & ", again " & root.WriteBinaryFileAPI(home & "\again", data)
On Error Resume Next
root.WriteBinaryFileAPI home & "\bytes", data
WScript.Echo "replacing: " & Err.Number
On Error Goto 0

Set drive = root.GetMyComputer().GetDrives().Item("c")
WScript.Echo "drive: " & drive.Path & " type " & drive.DriveType & ", sizes " & VarType(drive.TotalSize) & " " & _
    (drive.AvailableSpace <= drive.TotalSize) & ", in " & drive.GetRootFolder().Path
WScript.Echo "removed: " & root.GetFolder(home).Delete(True, True)
