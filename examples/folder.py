"""Lists a folder with Python and pywin32: python folder.py [FOLDER]"""

import sys

import pythoncom
import win32com.client


def main() -> int:
    path = sys.argv[1] if len(sys.argv) > 1 else r"C:\windows"
    root = win32com.client.gencache.EnsureDispatch("Veldmark2.SystemRoot")
    try:
        folder = root.GetFolder(path)
    except pythoncom.com_error as error:
        _, source, description, *_ = error.excepinfo or (None, "", error.strerror)
        print(f"Cannot open {path}: {description} ({source})", file=sys.stderr)
        return 1

    # By-reference arguments come back as the result.
    sub_folders, files = folder.GetFolderContents(None, None)
    for file in files:
        print(f"{file.FileSize:14.0f}  {file.DateLastModified:%Y-%m-%d %H:%M}  {file.FileName}")
    print(f"{sub_folders.Count} folders, {files.Count} files")
    return 0


if __name__ == "__main__":
    sys.exit(main())
