#!/bin/sh

ln -s -f /usr/share/zoneinfo/posix/%1 /etc/localtime
File_Permission = stat -c "%a %n" /etc/timezone
chmod 777 /etc/timezone
echo %2 > /etc/timezone
chmod $File_Permission /etc/timezone
