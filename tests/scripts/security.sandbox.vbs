' Security descriptors on the simulated estate: read, granted, saved, read back, and of every kind of object.
Option Explicit

Dim root, file, descriptor, other
Set root = CreateObject("Veldmark2.SystemRoot")

Set file = root.GetFile("C:\Plans\draft.txt")
Set descriptor = file.GetSecurityDescriptor
WScript.Echo descriptor.ParentObjectType & " " & descriptor.ParentObjectPath & " owner " & descriptor.GetOwnerSid.SidText
Show descriptor

WScript.Echo "Users may write:"
descriptor.GetDACL.Grant "S-1-5-32-545", 0, &H120116, 0
descriptor.Save
Set other = root.GetFile("C:\Plans\draft.txt").GetSecurityDescriptor
Show other

WScript.Echo "no more, and without what the folder hands down:"
other.GetDACL.GetAces.Item(1).Delete
other.GetDACL.IsProtected = True
root.SetNamedSD other
Show root.GetFile("C:\Plans\draft.txt").GetSecurityDescriptor

Named "\\LANTERN\Public", 5
Named "\\LANTERN\Spooler", 2
Named "\\LANTERN\Laser", 3
Named "CN=Anna", 8

On Error Resume Next
root.GetFile("C:\Plans\secret.txt").GetSecurityDescriptor
WScript.Echo "without the privilege: " & Err.Number & " " & Err.Description
Err.Clear
WScript.Echo root.SetPrivilege("", "SeBackupPrivilege")
Set descriptor = root.GetFile("C:\Plans\secret.txt").GetSecurityDescriptor
WScript.Echo "with it: " & Err.Number & ", " & descriptor.GetDACL.GetAces.Count & " entries"
Err.Clear
root.GetNamedSD "none", 2
WScript.Echo Err.Number & " " & Err.Description
Err.Clear
root.GetSidFromText "S-1-5"
WScript.Echo Err.Number & " " & Err.Description & " " & Err.Source
Err.Clear
Dim sid
Set sid = root.GetSidFromText2("s-1-5-32-544", "LANTERN")
WScript.Echo sid.SidText & " " & sid.SidLength & " " & sid.IsValid & " " & sid.IsEqual(root.GetSidFromText("X-9-5-32-544"))

Sub Named(name, kind)
  Dim found
  Set found = root.GetNamedSD(name, kind)
  WScript.Echo found.ParentObjectType & " " & found.ParentObjectPath & " revision " & found.GetDACL.Revision
  Show found
End Sub

Sub Show(descriptor)
  Dim ace, line
  For Each ace In descriptor.GetDACL.GetAces
    line = "  " & ace.GetSid.SidText & " " & Hex(ace.AccessMask) & " " & ace.PermissionsString & " | " & _
      ace.ExtendedPermissionsString & " | " & ace.InheritanceScope
    If ace.IsInherited Then line = line & " (inherited)"
    WScript.Echo line & ace.ObjectTypeGUID
  Next
End Sub
