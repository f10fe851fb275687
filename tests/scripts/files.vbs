' Whole files written, read back, copied and looked for, and the drives of this computer.
Option Explicit

Dim root, home, data, copy, drive
Set root = CreateObject("Veldmark2.SystemRoot")
home = "C:\Veldmark2 file test"
On Error Resume Next
root.GetFolder(home).Delete True, True
On Error Goto 0
root.CreateFolder home
WScript.Echo "folder: " & root.FolderExists(home & "\") & ", by its name: " & root.FileExists(home)
WScript.Echo "root: " & root.FolderExists("C:\") & ", missing: " & root.FolderExists(home & "\none")

WScript.Echo "written: " & root.WriteTextFile(home & "\plain.txt", "ten ASCII!")
WScript.Echo "read: " & root.ReadTextFile(home & "\plain.txt") & " " & root.ReadTextFileAPI(home & "\plain.txt")
root.WriteTextFile home & "\plain.txt", "TEN"
WScript.Echo "over a longer one: " & root.ReadTextFile(home & "\plain.txt")
root.WriteTextFile home & "\wide.txt", "wide " & Chr(233), True
WScript.Echo "wide: " & (root.ReadTextFile(home & "\wide.txt") = "wide " & Chr(233)) & " " & _
    (root.ReadTextFileAPI(home & "\wide.txt") = "wide " & Chr(233))
root.WriteTextFile home & "\short.txt", "abcdef"
WScript.Echo "short: " & root.ReadTextFile(home & "\short.txt") & " " & _
    Len(root.ReadTextFileAPI(home & "\short.txt"))
WScript.Echo "made by reading: [" & root.ReadTextFile(home & "\made.txt") & "] " & root.FileExists(home & "\ma*.txt")

WScript.Echo "bytes: " & root.WriteBinaryFileAPI(home & "\bytes", Array(0, 1, 255))
data = root.ReadBinaryFileAPI(home & "\bytes")
WScript.Echo "type " & VarType(data) & ", again " & root.WriteBinaryFileAPI(home & "\again", data)
On Error Resume Next
root.WriteBinaryFileAPI home & "\bytes", data
Report "replacing"
root.ReadBinaryFileAPI home & "\bytes"
Report "reading nothing"
root.ReadTextFileAPI home & "\none"
Report "reading none"
root.WriteTextFile home & "\none\file", "x"
Report "a missing folder"
root.WriteBinaryFileAPI home & "\empty", Array()
Report "no elements"
root.CopyFile home & "\plain.txt", home & "\wide.txt", False
Report "copy onto another"
root.CopyFile home & "\plain.txt", home & "\none\none\copy.txt", False
Report "copy below nothing"
root.AddNetworkConnection "C:", "\\nobody-there\share", "user", "secret", 1, 0
WScript.Echo "connected: " & (Err.Number = 0)
On Error Goto 0
copy = home & "\New\copy.txt"
root.CopyFile home & "\plain.txt", copy, False
WScript.Echo "copied: " & root.ReadTextFile(copy)

Set drive = root.GetMyComputer().GetDrives().Item("c")
WScript.Echo "drive: " & drive.DriveLetter & " " & drive.Path & " type " & drive.DriveType
WScript.Echo "  ready " & drive.IsReady & ", longest name " & (drive.MaxFilenameComponentLength > 100)
WScript.Echo "  sizes " & VarType(drive.TotalSize) & ", in order " & _
    (drive.FreeSpace <= drive.TotalSize And drive.AvailableSpace = drive.FreeSpace)
WScript.Echo "  root folder " & drive.GetRootFolder().Path & " " & drive.GetRootFolder().FolderName
drive.EjectDisk
WScript.Echo "removed: " & root.GetFolder(home).Delete(True, True)

Sub Report(what)
  WScript.Echo what & ": " & Err.Number
  Err.Clear
End Sub
