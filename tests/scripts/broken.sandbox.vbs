' On an estate that can't be read no script starts: the file, the place and the reason are told instead.
WScript.Echo "started"
