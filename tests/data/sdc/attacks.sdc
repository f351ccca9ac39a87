source $there/secret.sdc
source ../[lindex [split $there /] end]/secret.sdc
open $there/secret.sdc
open out w
open "|touch out" w
exec touch out
exec sh -c {touch out}
file mkdir out
file copy $there/secret.sdc out
file delete $there/secret.sdc
file rename $there/secret.sdc out
file attributes $there/secret.sdc
file stat $there/secret.sdc s
file link out $there/secret.sdc
file tempfile f out
file readlink /proc/self/exe
file exists $there/secret.sdc
file channels
glob *
glob -directory $there *
cd $there
pwd
load /usr/lib/x86_64-linux-gnu/libtk8.6.so
unload x
socket localhost 22
socket -server list 0
fconfigure stdout -buffering none
chan open out
chan create write list
chan pipe
gets stdin
read stdin
encoding dirs $there
encoding system
interp create child
interp eval {} {exec touch out}
interp invokehidden {} open out w
interp expose {} open
interp hide {} set_false_path
after 1 {exec touch out}
vwait forever
update
fileevent stdin readable list
trace add execution set_false_path enter list
rename set_false_path old
proc set_false_path args {}
namespace eval :: {proc get_ports args {}}
uplevel #0 {open out w}
apply {{} {exec touch out}}
namespace eval ::tcl {open out w}
::tcl::file::delete $there/secret.sdc
::tcl::chan::open out w
::tcl::unsupported::representation x
info nameofexecutable
info hostname
info library
zlib push gzip stdout
eval [list exec touch out]
subst {[exec touch out]}
exit 3
set_false_path -from last
