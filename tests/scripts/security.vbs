' Security descriptors of a file and a registry key of this computer: read, granted, saved, read back.
Option Explicit

Dim root, shell, path, file, descriptor, entry
Set root = CreateObject("Veldmark2.SystemRoot")
Set shell = CreateObject("WScript.Shell")
path = "C:\Veldmark2 security test.txt"
root.WriteTextFile path, "..."

Set file = root.GetFile(path)
Set descriptor = file.GetSecurityDescriptor
WScript.Echo descriptor.ParentObjectType & " " & (descriptor.Control And &H8004) & " " & TypeName(descriptor.BinarySD)
' A file system that keeps no more than owner and everyone still keeps this.
WScript.Echo "Everyone may write: " & MayWrite(file)
descriptor.GetDACL.Grant "S-1-1-0", 0, &H120116, 0
descriptor.Save
WScript.Echo "after the save: " & MayWrite(file)
WScript.Echo "as a named object: " & root.GetNamedSD(path, 1).GetOwnerSid.IsEqual(descriptor.GetOwnerSid)
WScript.Echo file.Delete

Const KEY = "CURRENT_USER\Software\Veldmark2 security test"
shell.RegWrite "HKCU\Software\Veldmark2 security test\made", 1
Set descriptor = root.GetNamedSD(KEY, 4)
descriptor.GetDACL.Grant "S-1-5-32-545", 0, &H20019, 2
descriptor.Save
For Each entry In root.GetNamedSD(KEY, 4).GetDACL.GetAces
  If entry.GetSid.SidText = "S-1-5-32-545" And entry.AceFlags = 2 Then
    WScript.Echo entry.GetSid.AccountDisplayName & ": " & entry.PermissionsString & ", " & entry.InheritanceScope
  End If
Next
WScript.Echo root.SetPrivilege("", "SeBackupPrivilege")
' Not every shell can do this.
On Error Resume Next
shell.RegDelete "HKCU\Software\Veldmark2 security test\"

Function MayWrite(file)
  For Each entry In file.GetSecurityDescriptor.GetDACL.GetAces
    If entry.GetSid.SidText = "S-1-1-0" Then MayWrite = (entry.AccessMask And &H120116) = &H120116
  Next
End Function
