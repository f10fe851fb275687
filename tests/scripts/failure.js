// An error that nobody catches ends a script with its text and a status.
var root = new ActiveXObject("Veldmark2.SystemRoot");
try {
  root.GetFolder("C:\\no such folder at all");
} catch (error) {
  WScript.Echo((error.number & 0xFFFF) + " " + error.description);
}
var e = new Enumerator(root.GetFolder("C:\\").GetSubFolders());
var count = 0;
for (; !e.atEnd(); e.moveNext()) count++;
WScript.Echo(count > 0);
root.GetFolder("C:\\no such folder at all");
