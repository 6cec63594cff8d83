#!/bin/sh
# Prints the configuration of the NTP daemon for the server in the settings file.
server=$(sed -n 's/.*"server" *: *"\([^"]*\)".*/\1/p' /etc/kadconfig/datetime.json)
echo 'driftfile /var/lib/ntp/ntp.drift'
echo "server ${server:-pool.ntp.org} iburst"
