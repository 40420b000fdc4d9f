# The values in labels, which are written only when they change.
#   wish watch_labels.tcl FONT
# What is shown at which tick stands in watchvalues.h.

set font [lindex $argv 0]
set periodMs 100
set rows 20
set printed 10
set held 10
set count 0

wm title . labels
for {set i 0} {$i < $rows} {incr i} {
    foreach {name column text} [list operand 0 MD[expr {4 * $i}] value 1 ? format 2 float] {
        grid [label .$name$i -font $font -text $text] -row $i -column $column -sticky w
    }
    set shown($i) ?
}

proc tick {} {
    global count shown
    after $::periodMs tick
    incr count
    if {$count == $::printed + $::held} {
        for {set i 0} {$i < $::rows} {incr i} {
            puts [.value$i cget -text]
        }
        flush stdout
    }
    set number [expr {$count - max(0, min($::held, $count - $::printed))}]
    for {set i 0} {$i < $::rows} {incr i} {
        set text [format %.6f [expr {100.0 * ($i + 1) + $number % 800 / 8.0}]]
        if {$text ne $shown($i)} {
            set shown($i) $text
            .value$i configure -text $text
        }
    }
}

after $::periodMs tick
