' A tour of Veldmark2: what ./run shows without a script. It reads what is there, works in a folder of its own, and
' takes that folder away again. Under ./run --sandbox it visits the computers of examples/estate.json instead.
Option Explicit

Dim root
Set root = CreateObject("Veldmark2.SystemRoot")

Heading "Who and where"
WScript.Echo "Computer: " & root.LocalComputerName
WScript.Echo "User:     " & root.LocalUserName

Heading "The root of drive C:"
ShowFolder root.GetFolder("C:\")

Dim home, base
home = "C:\Veldmark2 tour"
root.CreateFolder home
Set base = root.GetFolder(home)

Heading "A folder of our own: " & base.Path
Dim name, made
For Each name In Array("Letters", "Ledgers", "Maps")
  made = base.CreateSubFolder(name)
  WScript.Echo "Created " & name & ": " & made
Next
' A name that is taken is no error here, just False.
WScript.Echo "Created Maps once more: " & base.CreateSubFolder("Maps")

Dim maps
Set maps = base.GetSubFolders().ItemByKey("Maps")
maps.Attributes = maps.Attributes Or 2
WScript.Echo "Maps is hidden now: attributes " & AttributeText(root.GetFolder(home & "\Maps").Attributes)

Heading "A walk with progress"
Dim status
Set status = root.GetStatusObject()
WScript.ConnectObject status, "Progress_"
Dim folders, files
base.GetFolderContents folders, files
WScript.DisconnectObject status
WScript.Echo "By reference: " & folders.Count & " folders, " & files.Count & " files"

Heading "The same walk, object by object"
Dim found
found = 0
WScript.ConnectObject base, "Walk_"
base.AsyncFetch = True
base.GetSubFolders
base.AsyncFetch = False
WScript.DisconnectObject base
WScript.Echo "Stopped after " & found & "."

Heading "Tidying up"
maps.Attributes = 16
WScript.Echo "Removed with all that was in it: " & base.Delete(True, True) & " items"

Heading "An error, caught"
On Error Resume Next
root.GetFolder home & "\No such folder"
WScript.Echo "Number:      " & Err.Number
WScript.Echo "Description: " & Err.Description
WScript.Echo "Source:      " & Err.Source
Err.Clear
On Error Goto 0

Heading "What is still alive"
WScript.Echo status.GetDebugInfo("ObjectCounts")

Sub Progress_Status(text)
  WScript.Echo "  " & text
End Sub

Sub Walk_FolderFound(folder, cancel)
  found = found + 1
  WScript.Echo "  found " & folder.FolderName
  If found = 2 Then cancel = True
End Sub

Sub Heading(text)
  WScript.Echo ""
  WScript.Echo text
  WScript.Echo String(Len(text), "-")
End Sub

' One line an entry. GetFiles lists folders too, as files with the folder attribute; GetFolderContents keeps them apart.
Sub ShowFolder(folder)
  Dim subs, entries, entry
  folder.GetFolderContents subs, entries
  WScript.Echo PadRight("Name", 28) & PadLeft("Size", 12) & "  " & PadRight("Modified", 21) & "Attributes"
  For Each entry In subs
    WScript.Echo PadRight(entry.FolderName, 28) & PadLeft("", 12) & "  " & PadRight(DateText(entry.DateLastModified), 21) & _
      AttributeText(entry.Attributes)
  Next
  For Each entry In entries
    WScript.Echo PadRight(entry.FileName, 28) & PadLeft(CStr(entry.FileSize), 12) & "  " & _
      PadRight(DateText(entry.DateLastModified), 21) & AttributeText(entry.Attributes)
  Next
  WScript.Echo subs.Count & " folders, " & entries.Count & " files"
End Sub

Function PadRight(text, width)
  PadRight = Left(text & Space(width), width)
End Function

Function PadLeft(text, width)
  PadLeft = Right(Space(width) & text, width)
End Function

Function DateText(moment)
  DateText = Year(moment) & "-" & Two(Month(moment)) & "-" & Two(Day(moment)) & " " & Two(Hour(moment)) & ":" & _
    Two(Minute(moment)) & ":" & Two(Second(moment))
End Function

Function Two(number)
  Two = Right("0" & number, 2)
End Function

Function AttributeText(attributes)
  Dim letters
  letters = ""
  If attributes And 16 Then letters = letters & "D"
  If attributes And 1 Then letters = letters & "R"
  If attributes And 2 Then letters = letters & "H"
  If attributes And 4 Then letters = letters & "S"
  If attributes And 32 Then letters = letters & "A"
  AttributeText = letters
End Function
