#!/bin/sh
# Inside a private session bus (dbus-run-session): starts python3-dbusmock's notification
# daemon logging every call to LOG, waits until it owns its name, runs the command, stops it.
# usage: with_notification_daemon.sh LOG COMMAND...
log=$1; shift
/usr/bin/python3 -m dbusmock --session --template notification_daemon -l "$log" &
mock=$!
i=0
until dbus-send --session --dest=org.freedesktop.DBus --type=method_call --print-reply / \
        org.freedesktop.DBus.NameHasOwner string:org.freedesktop.Notifications 2>/dev/null | grep -q "boolean true"; do
  i=$((i + 1))
  if [ $i -gt 200 ]; then echo "the notification daemon did not start" >&2; kill $mock; exit 3; fi
  sleep 0.05
done
"$@"
status=$?
kill $mock
wait $mock 2>/dev/null
exit $status
