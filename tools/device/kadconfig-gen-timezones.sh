#!/bin/sh
# Prints the names of all time zones: ['Africa/Abidjan', 'Africa/Accra', ...]
cd /usr/share/zoneinfo/posix || exit 1
find -L . -type f -path './[A-Z]*' | LC_ALL=C sort | sed "s|^\./\(.*\)|'\1'|" | paste -s -d , | sed 's/,/, /g; s/.*/[&]/'
