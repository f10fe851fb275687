' A remote computer's share on the simulated estate, walked by collection, by event and with cancellation.
Option Explicit

Dim root, status, share, folders, files, entry, asked, found
Set root = CreateObject("Veldmark2.SystemRoot")
WScript.Echo root.LocalComputerName & " " & root.LocalUserName
WScript.Echo root.ConvertUTCtoLocal(DateSerial(2024, 3, 5))

Set share = root.GetFolder("\\LANTERN\Public")
WScript.Echo "[" & share.Path & "] [" & share.FolderName & "]"
share.GetFolderContents folders, files
For Each entry In folders
  WScript.Echo "  " & entry.FolderName & " " & entry.Attributes
Next
For Each entry In files
  WScript.Echo "  " & entry.FileName & " " & entry.FileSize & " " & entry.DateLastModified & " " & entry.ShortName
Next

Set status = root.GetStatusObject
WScript.ConnectObject status, "Status_"
asked = 0
share.GetFolderContents folders, files
WScript.Echo "asked " & asked & " times, then " & folders.Count & " folders, " & files.Count & " files"
WScript.DisconnectObject status

found = 0
WScript.ConnectObject share, "Share_"
share.AsyncFetch = True
WScript.Echo "by events: " & (share.GetSubFolders() Is Nothing) & ", found " & found
share.AsyncFetch = False

On Error Resume Next
root.GetFolder "\\NOWHERE\Share\x"
WScript.Echo Err.Number & " " & Err.Description
Err.Clear
root.GetFolder "\\LANTERN\Nothing\x"
WScript.Echo Err.Number & " " & Err.Description

Sub Status_Status(text)
  WScript.Echo "  " & text
End Sub

Sub Status_CancelLoading(count, cancel)
  asked = asked + 1
  WScript.Echo "  cancel at " & count & "? " & cancel
  cancel = True
End Sub

Sub Share_FolderFound(folder, cancel)
  found = found + 1
  cancel = True
End Sub
