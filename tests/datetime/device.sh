# The device of a scenario; its commands see these functions.
folder=$(dirname "${BASH_SOURCE[0]}")

fnDevice() { # puts a good device into place, whatever became of the one before
    local tool
    rm -rf /etc/{kadconfig,ntp.conf,timezone,localtime} /tmp/hung
    PATH=/tmp/original:$PATH "$folder/../../tools/device/install.sh"
    mkdir -p /tmp/original /tmp/real
    mv /usr/bin/{ntpq,kadconfig-gen-timezones.sh,kadconfig-gen-ntp-conf.sh} /tmp/original
    for tool in sh cat ln chmod; do
        [[ -e /tmp/original/$tool ]] || cp "/usr/bin/$tool" /tmp/original
    done
    cp --remove-destination /tmp/original/* /tmp/real
    for tool in /tmp/real/*; do
        cp --remove-destination "$folder/recorder" "/usr/bin/${tool##*/}"
    done
    # A short list of zones is as good as the whole one, and quicker.
    fnTool kadconfig-gen-timezones.sh "echo \"['Asia/Tokyo', 'Europe/Rome', 'UTC']\""
}

fnTool() { # NAME COMMAND: what the tool does from now on
    printf '#!/tmp/original/sh\n%s\n' "$2" >"/tmp/real/$1"
    /tmp/original/chmod +x "/tmp/real/$1"
}

fnGone() { # waits for the end of all that sleeps for 1000 s
    local i
    for ((i = 0; i < 300; i++)); do
        /tmp/original/cat /proc/[0-9]*/cmdline 2>/dev/null | tr '\0' ' ' | grep -q 'sleep 100[0]' || return 0
        sleep 0.01
    done
    echo 'something sleeps on'
}

fnState() { # what Apply leaves behind: the link, the name in the file and the mode of that
    local link name
    link=$(readlink /etc/localtime)
    name=$(/tmp/original/cat -v /etc/timezone)
    echo "${link#/usr/share/zoneinfo/} is $name, $(stat -c %a /etc/timezone)"
}
