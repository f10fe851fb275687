' An engine that breaks down, as Wine's does here, is told in one line of standard error.
WScript.Echo "started"
WScript.Echo TypeName(Nothing)
