#!/bin/sh

/usr/bin/kadconfig-gen-ntp-conf.sh > /etc/kadconfig-ntp.conf
