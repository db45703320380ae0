#!/usr/bin/env tclsh
# A clock with a face. "Quotes" mean nothing here.
package require Tk 8.6
namespace eval ::clock {
    variable limit 1000000 mask 0xFF small 1.5e-3
    variable faces [list round square "old \"one\"\t\u00e4"]
}

proc ::clock::draw {canvas {size 200} args} {
    variable faces
    global env
    set text "over
    two lines with $size and [llength $args] \$here"
    if {$size <= 0 || ![winfo exists $canvas]} {
        error "cannot draw: $size" ;# at once
    } elseif {$size == 1 && $size ne "x"} {
        return -code error
    } else {
        puts stdout {a text with "quotes" and $nothing}
    }
    foreach {key value} $args {
        switch -exact -- $key {
            -fill   { set colour $value }
            default { continue }
        }
    }
    for {set i 0} {$i < 12} {incr i} {
        set angle [expr {$i * 3.14159 / 6 + sin($i)}]
        $canvas create line 0 0 [expr {int(cos($angle) * $size)}] 10 -fill #ff00ee -width 2
    }
    while {1} { if {[incr i -1] < 0} break }
    dict set state hands [dict create hour 1 minute 2]
    catch {open $path r} handle options
    set list [lsort -integer -decreasing [lrange $faces 0 end-1]]
    string map {a b "c d" e} [string trim $text]
    regexp -nocase {^(\w+)\s*=\s*(.*)$} $text whole key value
    return [lindex $list 0]
}

try {
    source [file join [file dirname [info script]] face.tcl]
} trap {POSIX ENOENT} {message} {
    puts stderr "missing: $message"
} finally {
    unset -nocomplain message
}

label .face -text "time" -bg #202020 -font {Helvetica 12 bold}
pack .face -side left -expand yes
bind . <Key-q> { exit 0 }
after 1000 [list ::clock::draw .face 100]
upvar 1 name local; uplevel #0 {set x 1}
set escaped \"word\ with\ blanks\"; set brace \{
set open "never closed
set hidden 1
