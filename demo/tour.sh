# shellcheck shell=bash
# The tour of all that the panel can do, in the stages of stages.sh.

fnStage started 'The panel as it starts'

fnSend 'i4711' 'dQX 500/600' 'v3.4.1'
fnStage device 'Device type and target version'

fnService setInterfaceConfigJSON eth0 \
    '{"name" : "eth0","dhcp" : false,"ip_address" : "10.0.0.77","netmask" : "255.0.0.0","gateway_ip" : "10.0.0.1"}'
fnService applyNewConfiguration
fnSay 'Another client changes the address of eth0; the panel asks for it every ten seconds'
fnFinger await =10.0.0.77
fnStage interfaces 'The panel shows the new address'

fnFinger tap =10.0.0.77
fnFinger await NetworkSettingsDialog
fnStage network-dialog 'A tap on the address opens the settings of that interface'
fnFinger type ipAddress_LineEdit 172.16.1.5
if [[ -n ${QT_IM_MODULE:-} ]]; then
    fnStage keyboard 'An on-screen keyboard comes with the keys for an address; the dialog stays above it'
fi
fnFinger tap applyButton
fnFinger await =172.16.1.5
fnFinger tap closeButton
fnStage network-static 'Apply sends another address; the panel shows it at once'

fnFinger tap =172.16.1.5
fnFinger tap useDHCP_comboBox
fnFinger await =Yes
fnStage network-choice 'DHCP is chosen in its place'
fnFinger tap =Yes
fnFinger tap applyButton
fnFinger tap closeButton
fnFinger await =DHCP
fnStage network-dhcp 'There is no lease yet'
fnFinger await =192.168.1.20
fnStage network-lease 'The lease has arrived'

fnSend w1
fnOnDevice 'sleep 1.2' # the hand disappears after one second and is back after two
fnStage wink 'Wink: a blinking hand identifies the device'
fnStage wink-blink 'It blinks once a second'
fnSend w0
fnStage wink-off 'Wink is off'

fnFinger reach appnameForm_Label
fnSend n3 'a000Mixer line' 's000Running'
fnStage application 'The main application runs; the rows are scrolled to it by touch'

fnSend 'a001Förderband Süd' 's001Stop' 'a002Not shown: the last index has no row'
fnFinger reach '=Förderband Süd'
fnStage applications 'Three applications'

fnSend 's000Exception' 's001Running'
fnStage status 'Their status changes'

fnFinger tap systemTimeForm_Label
fnFinger await ntpStatus_Label 'Last sync:64 secs ago'
fnFinger await timezone_ComboBox Europe/Rome
fnStage datetime-dialog 'A tap on the clock opens its settings, with what the device has set'
fnFinger open timezone_ComboBox
fnFinger await =Europe/Riga
fnStage datetime-zones 'The list has all time zones'
fnFinger tap =Europe/Rome
fnFinger type timezone_ComboBox Tokyo
fnFinger await =Asia/Tokyo
fnStage datetime-found 'A part of a name finds the zones that contain it'
fnFinger tap =Asia/Tokyo
fnFinger tap applyButton
fnAwaitOnDevice 'grep -q Asia/Tokyo /etc/timezone'
fnFinger tap autoUpdate_CheckBox
fnStage datetime-ntp 'With Automatic Update the time comes from a server'
fnFinger tap applyButton
fnAwaitOnDevice "grep -q 'start(.ntpd' /tmp/ovik-simulator.log"
fnFinger tap autoUpdate_CheckBox
fnFinger tap applyButton
fnFinger tap closeButton
fnStage datetime-zone 'The clock shows the time of the other zone; NTP is off again'
fnSay "The device's files, /etc/localtime and /etc/timezone, and what the platform service was asked:"
fnOnDevice 'readlink /etc/localtime; cat /etc/timezone; grep ServiceManager /tmp/ovik-simulator.log'

fnFinger tap toolButton
fnAwaitOnDevice 'test -e /tmp/kadconfig-app.log'
fnSay 'The settings button has started the configuration application'

fnSend n20 'a018A very long application name, longer than the screen of the panel is wide'
fnFinger reach systemTimeForm_Label
fnStage scrolled 'Twenty applications, scrolled by touch'

fnSend n3
