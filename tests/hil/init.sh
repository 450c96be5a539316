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
for variant in id noid; do
  g=$G/$variant
  mkdir -p $g/strings/0x409 $g/configs/c.1/strings/0x409 $g/functions/ffs.$variant
  echo 0x0c45 > $g/idVendor
  echo 0x8075 > $g/idProduct
  echo "ORVANE M61" > $g/strings/0x409/product
  echo "ORVANE" > $g/strings/0x409/manufacturer
  echo "rig" > $g/configs/c.1/strings/0x409/configuration
  ln -s $g/functions/ffs.$variant $g/configs/c.1/
  mkdir -p /ffs/$variant
  mount -t functionfs $variant /ffs/$variant
  /bin/orvane_hil_gadget --ffs /ffs/$variant --variant $variant > /tmp/gadget-$variant.log 2>/tmp/gadget-$variant.err &
  gpid=$!
  n=0; while [ ! -e /ffs/$variant/ep1 ] && [ $n -lt 100 ]; do sleep 0.1; n=$((n+1)); done
  echo dummy_udc.0 > $g/UDC || echo "HIL-ERROR bind $variant"
  /bin/orvane_hil_host > /tmp/host-$variant.log 2>&1
  echo "HIL-RC $variant $?"
  echo "" > $g/UDC
  kill $gpid
  sed "s/^/HIL-GADGET $variant /" /tmp/gadget-$variant.log
  sed "s/^/HIL-GADGET-ERR $variant /" /tmp/gadget-$variant.err
  sed "s/^/HIL-HOST $variant /" /tmp/host-$variant.log
done
echo HIL-DONE
sync
poweroff -f
