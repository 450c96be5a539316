#!/bin/sh
# PID 1 of the rig's VM: load the USB stack with an emulated device controller,
# start udev as a desktop has it, then for each descriptor variant plug in
# the keyboard gadget and run the host program against it.
export PATH=/bin:/sbin:/usr/bin:/usr/sbin
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t devtmpfs dev /dev
mkdir -p /run /tmp
mount -t tmpfs run /run
for m in $(cat /modules.list); do insmod "/modules/$m" || echo "HIL-ERROR insmod $m"; done
mount -t configfs none /sys/kernel/config
/lib/systemd/systemd-udevd --daemon
udevadm trigger --action=add >/dev/null 2>&1
udevadm settle --timeout=10

G=/sys/kernel/config/usb_gadget
# run name, descriptor variant, host program arguments
for run in "id id" "noid noid" "noaccess id --as-uid 1000"; do
  set -- $run
  name=$1 variant=$2
  shift 2
  g=$G/$name
  mkdir -p $g/strings/0x409 $g/configs/c.1/strings/0x409 $g/functions/ffs.$name
  echo 0x0c45 > $g/idVendor
  echo 0x8075 > $g/idProduct
  echo "ORVANE M61" > $g/strings/0x409/product
  echo "ORVANE" > $g/strings/0x409/manufacturer
  echo "rig" > $g/configs/c.1/strings/0x409/configuration
  ln -s $g/functions/ffs.$name $g/configs/c.1/
  mkdir -p /ffs/$name
  mount -t functionfs $name /ffs/$name
  /bin/orvane_hil_gadget --ffs /ffs/$name --variant $variant > /tmp/gadget-$name.log 2>/tmp/gadget-$name.err &
  gpid=$!
  n=0; while [ ! -e /ffs/$name/ep1 ] && [ $n -lt 100 ]; do sleep 0.1; n=$((n+1)); done
  echo dummy_udc.0 > $g/UDC || echo "HIL-ERROR bind $name"
  /bin/orvane_hil_host "$@" > /tmp/host-$name.log 2>&1
  echo "HIL-RC $name $?"
  # What our udev rule made of the keyboard's nodes, after the re-attach too.
  udevadm settle --timeout=10
  for dev in /sys/class/hidraw/* /sys/bus/usb/devices/*-*; do
    case $dev in *:*) continue ;; esac
    echo "HIL-TAGS $name ${dev##*/} $(udevadm info -q property -p "$dev" | sed -n 's/^CURRENT_TAGS=//p')"
  done
  echo "" > $g/UDC
  kill $gpid
  sed "s/^/HIL-GADGET $name /" /tmp/gadget-$name.log
  sed "s/^/HIL-GADGET-ERR $name /" /tmp/gadget-$name.err
  sed "s/^/HIL-HOST $name /" /tmp/host-$name.log
done
echo HIL-DONE
sync
poweroff -f
