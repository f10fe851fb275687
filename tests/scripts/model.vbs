' What a script sees of the object model: creation, enumeration, by-reference arguments, events, errors.
Option Explicit

Dim root, base, home, folders, files, entry, found
Set root = CreateObject("Veldmark2.SystemRoot")
home = "C:\Veldmark2 script test"
On Error Resume Next
root.GetFolder(home).Delete True, True
On Error Goto 0

WScript.Echo "created: " & root.CreateFolder(home)
Set base = root.GetFolder(home & "\")
WScript.Echo base.Path & ", " & base.FolderName & ", " & VarType(base.Attributes) & ":" & base.Attributes
WScript.Echo base.CreateSubFolder("One") & " " & base.CreateSubFolder("two") & " " & base.CreateSubFolder("ONE")
base.GetFolderContents folders, files
WScript.Echo folders.Count & " folders, " & files.Count & " files: " & folders(1).FolderName & ", " & folders("two").FolderName
For Each entry In base.GetPathNames(True, False)
  WScript.Echo "  " & entry.PathName & " " & entry.IsDirectory
Next

WScript.ConnectObject base, "Base_"
base.AsyncFetch = True
base.GetSubFolders
WScript.DisconnectObject base
base.GetSubFolders
base.AsyncFetch = False
WScript.Echo "heard of:" & found

On Error Resume Next
Set entry = folders.Item("TWO")
Report "unknown name"
root.CreateSD 0
Report "obsolete"
On Error Goto 0
WScript.Echo "removed: " & base.Delete(True, True)

Sub Report(what)
  WScript.Echo what & ": " & Hex(Err.Number) & " " & Err.Description
  Err.Clear
End Sub

Sub Base_FolderFound(folder, cancel)
  found = found & " " & folder.FolderName
  cancel = True
End Sub
