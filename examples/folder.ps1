# Lists a folder with PowerShell: .\folder.ps1 [-Path C:\windows]
param([string]$Path = 'C:\windows')

$root = New-Object -ComObject Veldmark2.SystemRoot
try {
    $folder = $root.GetFolder($Path)
} catch {
    Write-Error "Cannot open ${Path}: $($_.Exception.Message)"
    exit 1
}

$subFolders = $null
$files = $null
$folder.GetFolderContents([ref]$subFolders, [ref]$files)
$files | ForEach-Object {
    [pscustomobject]@{ Name = $_.FileName; Size = $_.FileSize; Modified = $_.DateLastModified }
} | Format-Table -AutoSize
"$($subFolders.Count) folders, $($files.Count) files"
