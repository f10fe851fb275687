' Who is in the network: every network with its domains, their computers and users, and the members of each group by
' name. Takes the name of one domain as an argument to look at that one alone.
'
'   ./run --sandbox examples/who-is-in.vbs [DOMAIN]
Option Explicit

Dim root, wanted, network, domain, domains, reason
Set root = CreateObject("Veldmark2.SystemRoot")
wanted = ""
If WScript.Arguments.Count > 0 Then wanted = UCase(WScript.Arguments(0))

For Each network In root.GetNetHood().GetNetworks()
  WScript.Echo network.NetworkName
  Set domains = DomainsOf(network)
  For Each domain In domains
    If wanted = "" Or UCase(domain.DomainName) = wanted Then ShowDomain domain
  Next
Next

' A network that can't be asked for its domains is shown without any.
Function DomainsOf(network)
  On Error Resume Next
  Set DomainsOf = network.GetDomains()
  If Err.Number <> 0 Then
    WScript.Echo "  (" & Err.Description & ")"
    Set DomainsOf = CreateObject("Veldmark2.CDomains")
  End If
End Function

Sub ShowDomain(domain)
  WScript.Echo "  " & domain.DomainName & Remark(domain.Comment)
  Dim server
  For Each server In ServersOf(domain)
    WScript.Echo "    computer " & server.ServerName & DescriptionOf(server)
  Next
  Dim controller
  Set controller = ControllerOf(domain)
  If controller Is Nothing Then Exit Sub
  Dim user
  For Each user In controller.GetUsers()
    WScript.Echo "    user " & user.AccountDisplayName & StateOf(user)
  Next
  Dim group
  For Each group In domain.GetGroups()
    ShowMembers group
  Next
  For Each group In controller.GetGroups()
    ShowMembers group
  Next
End Sub

' A domain whose computers nobody lists is shown without any.
Function ServersOf(domain)
  On Error Resume Next
  Set ServersOf = domain.GetServers()
  If Err.Number <> 0 Then
    WScript.Echo "    (" & Err.Description & ")"
    Set ServersOf = CreateObject("Veldmark2.CServers")
  End If
End Function

Function DescriptionOf(server)
  If server.StateUnknown Then
    DescriptionOf = " (has an account, was not heard of)"
  Else
    DescriptionOf = Remark(server.Comment)
  End If
End Function

' A workgroup has no controller, and so no accounts of its own.
Function ControllerOf(domain)
  Set ControllerOf = Nothing
  On Error Resume Next
  Set ControllerOf = domain.GetPDC()
End Function

Function StateOf(user)
  StateOf = ""
  If user.FullName <> "" Then StateOf = " (" & user.FullName & ")"
  If user.AccountDisabled Then StateOf = StateOf & ", disabled"
  If user.AccountLocked Then StateOf = StateOf & ", locked"
  If user.PasswordNoExpire Then StateOf = StateOf & ", password never expires"
End Function

Sub ShowMembers(group)
  Dim names, member, groups, users
  names = ""
  Set users = group.GetUsers()
  Set groups = group.GetGroups()
  For Each member In users
    names = names & ", " & member.AccountDisplayName
  Next
  ' A global group has users alone.
  If Not groups Is Nothing Then
    For Each member In groups
      names = names & ", " & member.AccountDisplayName
    Next
  End If
  If names = "" Then Exit Sub
  WScript.Echo "    group " & group.AccountDisplayName & ": " & Mid(names, 3)
End Sub

Function Remark(text)
  Remark = ""
  If text <> "" Then Remark = " - " & text
End Function
