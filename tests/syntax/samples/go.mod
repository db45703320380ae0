// A module. "Quotes" mean nothing here.
module example.org/clock/v2

go 1.22.1

toolchain go1.22.2

require example.org/gear v1.4.0

require (
	example.org/face v0.0.0-20240131120000-0123456789ab // indirect
	example.org/hand/v3 v3.2.1+incompatible
	"example.org/quoted" v1.0.0
)

exclude example.org/old v1.2.3

replace example.org/gear v1.4.0 => ../gear

replace (
	example.org/face => example.org/fork/face v1.5.0
	example.org/require => ./require // a name that is a word
)

retract (
	v2.0.0 // published by mistake
	[v2.1.0, v2.1.9]
)

godebug default=go1.21
tool example.org/gear/cmd/wind
ignore ./testdata
