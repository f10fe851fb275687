' A tour of Veldmark2: what ./run shows without a script. It reads what is there, works in a folder of its own, and
' takes that folder away again. Under ./run --sandbox it visits the computers of examples/estate.json instead.
Option Explicit

Const EVERYONE = "S-1-1-0"
Const WRITE_RIGHTS = &H120116
' Those of them that reading doesn't need as well.
Const WRITE_ONLY = &H116

Dim root
Set root = CreateObject("Veldmark2.SystemRoot")

Heading "Who and where"
WScript.Echo "Computer: " & root.LocalComputerName
WScript.Echo "User:     " & root.LocalUserName

Heading "The root of drive C:"
ShowFolder root.GetFolder("C:\")

Heading "The drives"
Dim drive
WScript.Echo PadRight("Drive", 7) & PadRight("Type", 11) & PadRight("File system", 13) & PadLeft("Size", 12) & PadLeft("Free", 12) & "  Label"
For Each drive In root.GetMyComputer().GetDrives()
  ShowDrive drive
Next

Dim home, base
home = "C:\Veldmark2 tour"
If Not root.FolderExists(home) Then root.CreateFolder home
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

Heading "Its permissions"
Dim descriptor, entry
Set descriptor = base.GetSecurityDescriptor()
WScript.Echo "Owner: " & descriptor.GetOwnerSid().AccountDisplayName
ShowPermissions descriptor
descriptor.GetDACL().Grant EVERYONE, 0, WRITE_RIGHTS, 0
descriptor.Save
WScript.Echo "Everyone may write now: " & EveryoneMayWrite(root.GetFolder(home).GetSecurityDescriptor())
For Each entry In descriptor.GetDACL().GetAces()
  If entry.GetSid().SidText = EVERYONE And entry.AceFlags = 0 Then entry.AccessMask = entry.AccessMask And Not WRITE_ONLY
Next
descriptor.Save
WScript.Echo "Taken back:             " & (Not EveryoneMayWrite(root.GetFolder(home).GetSecurityDescriptor()))

Heading "A text, written and read"
root.WriteTextFile home & "\Note.txt", "Seven words that came back as sent.", True
WScript.Echo root.ReadTextFile(home & "\Note.txt")

Heading "A program's version"
Dim program
For Each program In Array("C:\windows\system32\kernel32.dll", "C:\windows\system32\spooler.dll")
  If root.FileExists(program) Then
    ShowVersion root.GetFile(program)
    Exit For
  End If
Next

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

Dim computer, service, printer, task
Set computer = root.GetServer(root.LocalComputerName)
For Each service In computer.GetServices()
  Heading "A service that runs"
  WScript.Echo service.DisplayName & " (" & service.ServiceName & "): " & service.BinaryPathName & " as " & service.ServiceStartName
  Exit For
Next

For Each printer In computer.GetPrinters()
  Heading "A printer"
  WScript.Echo printer.Description & ": " & printer.Comment & ", " & printer.NumJobs & " documents, " & printer.AveragePPM & " pages a minute"
  Exit For
Next

For Each task In computer.GetTasks()
  Heading "A scheduled task"
  WScript.Echo task.Name & ": " & task.ApplicationName & ", next at " & task.NextRunTime
  Exit For
Next

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

' An empty drive has no size and says so with an error.
Sub ShowDrive(drive)
  Dim size, free
  On Error Resume Next
  size = Gigabytes(drive.TotalSize)
  free = Gigabytes(drive.FreeSpace)
  On Error Goto 0
  WScript.Echo PadRight(drive.Path, 7) & PadRight(DriveTypeText(drive.DriveType), 11) & PadRight(drive.FileSystem, 13) & _
    PadLeft(size, 12) & PadLeft(free, 12) & "  " & drive.VolumeName
End Sub

Function Gigabytes(bytes)
  Gigabytes = FormatNumber(CDbl(bytes) / 1024 / 1024 / 1024, 1) & " GiB"
End Function

Function DriveTypeText(kind)
  Select Case kind
    Case 2: DriveTypeText = "removable"
    Case 3: DriveTypeText = "fixed"
    Case 4: DriveTypeText = "network"
    Case 5: DriveTypeText = "disc"
    Case 6: DriveTypeText = "memory"
    Case Else: DriveTypeText = "unknown"
  End Select
End Function

' Who, what, which rights, and where they apply.
Sub ShowPermissions(descriptor)
  Dim entry, verb
  WScript.Echo PadRight("Who", 34) & PadRight("Does", 8) & PadRight("Rights", 14) & "Where"
  For Each entry In descriptor.GetDACL().GetAces()
    verb = "allow"
    If entry.AceType = 1 Then verb = "deny"
    WScript.Echo PadRight(entry.GetSid().AccountDisplayName, 34) & PadRight(verb, 8) & _
      PadRight(entry.PermissionsString, 14) & entry.InheritanceScope
  Next
End Sub

Function EveryoneMayWrite(descriptor)
  Dim entry
  EveryoneMayWrite = False
  For Each entry In descriptor.GetDACL().GetAces()
    If entry.GetSid().SidText = EVERYONE And (entry.AccessMask And WRITE_RIGHTS) = WRITE_RIGHTS Then EveryoneMayWrite = True
  Next
End Function

Sub ShowVersion(file)
  WScript.Echo "File:        " & file.Path
  WScript.Echo "Version:     " & file.Version
  WScript.Echo "Description: " & file.Description
  WScript.Echo "Company:     " & file.CompanyName
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
