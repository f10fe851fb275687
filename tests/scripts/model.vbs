' What a script sees of the object model: creation, enumeration, optional and by-reference arguments, errors.
Option Explicit

Dim root, other, base, home
Set root = CreateObject("Veldmark2.SystemRoot")
Set other = CreateObject("Veldmark2.SystemRoot")
WScript.Echo "one status object: " & (root.GetStatusObject Is other.GetStatusObject)

home = "C:\Veldmark2 script test"
On Error Resume Next
root.GetFolder(home).Delete True, True
On Error Goto 0

WScript.Echo "created: " & root.CreateFolder(home)
Set base = root.GetFolder(home & "\")
WScript.Echo base.Path & ", " & base.FolderName & ", " & TypeNumber(base.Attributes)
WScript.Echo base.CreateSubFolder("One") & " " & base.CreateSubFolder("two") & " " & base.CreateSubFolder("ONE")

Dim folders, files, entry
base.GetFolderContents folders, files
WScript.Echo "folders " & folders.Count & ", files " & files.Count
For Each entry In folders
  WScript.Echo "  " & entry.FolderName & " " & entry.Path
Next
For Each entry In base.GetFiles()
  WScript.Echo "  as a file: " & entry.FileName
Next
For Each entry In base.GetPathNames(True, False)
  WScript.Echo "  " & entry.PathName & " " & entry.IsDirectory
Next

WScript.Echo "by position: " & folders(1).FolderName & ", by name: " & folders("two").FolderName
On Error Resume Next
Set entry = folders.Item("TWO")
Report "unknown name"
Set entry = folders.Item(3)
Report "position out of range"
Set entry = folders.Item("1")
Report "digits are a name"
root.GetFolder home & "\nothing"
Report "missing folder"
root.CreateSD 0
Report "obsolete"
root.GetFolder home, 1
Report "too many arguments"
root.GetFolder
Report "too few arguments"
root.Nonsense
Report "no such member"
folders.Add root
Report "wrong object"
root.CreateSD "seven"
Report "wrong type"
On Error Goto 0

Dim name, file, list
Set list = CreateObject("Veldmark2.CFiles")
For Each name In Array("b", "B", "2", "b")
  Set file = CreateObject("Veldmark2.CFile")
  file.FileName = name
  list.Add file
Next
WScript.Echo "files: " & list.Count & " " & list.ItemByKey("2").FileName & " " & list.Item(2).FileName
list.Remove 1
WScript.Echo "after removal: " & list.Count & " " & list(1).FileName

file.Path = "\\?\UNC\SRV\Share\f" & Chr(0) & "x"
WScript.Echo "path: " & Len(file.Path) & " " & Left(file.Path, 13)
file.Path = String(40000, "p")
WScript.Echo "long path: " & Len(file.Path)

WScript.Echo "removed: " & base.Delete(True, True)
WScript.Echo Replace(root.GetStatusObject().GetDebugInfo("anything"), "'", """")

Sub Report(what)
  If Err.Number = 0 Then
    WScript.Echo what & ": no error"
  Else
    WScript.Echo what & ": " & Hex(Err.Number) & " " & Err.Description
  End If
  Err.Clear
End Sub

Function TypeNumber(value)
  TypeNumber = VarType(value) & ":" & value
End Function
