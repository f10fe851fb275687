' Security descriptors of a file, a folder and a registry key of the real platform: read, granted, saved, read back.
Option Explicit

Dim root, shell, files, path, file, descriptor, again
Set root = CreateObject("Veldmark2.SystemRoot")
Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")
path = files.GetSpecialFolder(2) & "\Veldmark2 security test.txt"
files.CreateTextFile(path, True).Close

Set file = root.GetFile(path)
Set descriptor = file.GetSecurityDescriptor
WScript.Echo descriptor.ParentObjectType & " of " & file.FileName & ", owner " & descriptor.GetOwnerSid.IsValid & _
  ", " & (descriptor.GetDACL.GetAces.Count > 0)
WScript.Echo "binary: " & (descriptor.Control And &H8004) & " " & descriptor.Revision & " " & TypeName(descriptor.BinarySD)
' A file system that keeps no more than owner and everyone still keeps this.
WScript.Echo "Everyone may write: " & MayWrite(descriptor)
descriptor.GetDACL.Grant "S-1-1-0", 0, &H120116, 0
descriptor.Save
Set again = root.GetFile(path).GetSecurityDescriptor
WScript.Echo "after the save: " & MayWrite(again)
RightsOf(again).AccessMask = &H120089
again.Save
WScript.Echo "taken back: " & MayWrite(root.GetFile(path).GetSecurityDescriptor)
WScript.Echo "as a named object: " & root.GetNamedSD(path, 1).GetOwnerSid.IsEqual(again.GetOwnerSid)
WScript.Echo root.GetFolder("C:\windows").GetSecurityDescriptor.GetDACL.GetAces.Item(1).InheritanceScope
WScript.Echo file.Delete

On Error Resume Next
file.GetSecurityDescriptor
WScript.Echo Err.Number & " " & Err.Source
Err.Clear
On Error Goto 0

Const KEY = "CURRENT_USER\Software\Veldmark2 security test"
shell.RegWrite "HKCU\Software\Veldmark2 security test\made", 1
Set descriptor = root.GetNamedSD(KEY, 4)
descriptor.GetDACL.Grant "S-1-5-32-545", 0, &H20019, 2
descriptor.Save
For Each again In root.GetNamedSD(KEY, 4).GetDACL.GetAces
  If again.GetSid.SidText = "S-1-5-32-545" And again.AceFlags = 2 Then
    WScript.Echo "Users: " & again.PermissionsString & ", " & again.ExtendedPermissionsString & ", " & again.InheritanceScope
  End If
Next
WScript.Echo root.SetPrivilege("", "SeBackupPrivilege")
' Not every shell can do this.
On Error Resume Next
shell.RegDelete "HKCU\Software\Veldmark2 security test\"
On Error Goto 0

Function RightsOf(descriptor)
  Dim ace
  For Each ace In descriptor.GetDACL.GetAces
    If ace.GetSid.SidText = "S-1-1-0" Then Set RightsOf = ace
  Next
End Function

Function MayWrite(descriptor)
  MayWrite = (RightsOf(descriptor).AccessMask And &H120116) = &H120116
End Function
