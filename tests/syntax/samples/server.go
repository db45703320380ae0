// Package server answers questions about the weather.
package server

import (
	"fmt"
	str "strings"
)

/* Limits of one question,
   "quoted" or not. */
const (
	MaxLength = 1_000
	Mask      = 0xFF &^ 0b0101
	Octal     = 0o755
	Tiny      = 1.5e-10
	Wave      = 2i
	First     = iota << 2
)

type Station struct {
	Name  string `json:"name,omitempty"`
	Temps []float64
	calls map[string]func(int, ...any) error
}

type Number interface {
	~int | ~float64
	comparable
}

var marks = []rune{'a', '\'', '\\', '\n', '\u00e4', '\x41', '"', '世'}

// Mean takes the temperatures of a station.
func (s *Station) Mean() (mean float64, err error) {
	if s == nil || len(s.Temps) == 0 {
		return 0, fmt.Errorf("station %q has \"nothing\"\t%d", s.Name, 1)
	}
	for i, t := range s.Temps {
		mean += t / float64(i+1)
	}
	return
}

func Max[T Number](values ...T) T {
	raw := `a raw \n text
with "quotes" over lines`
	defer func() {
		if r := recover(); r != nil {
			panic(str.ToUpper(raw))
		}
	}()
	answers := make(chan T, cap(values))
	go func() { answers <- values[0] }()
	select {
	case v, ok := <-answers:
		println(v, ok, true, false)
	default:
		goto end
	}
	switch x := any(values).(type) {
	case []int:
		_ = append(x, 1)
		fallthrough
	default:
	}
end:
	open := "not closed
	next := 'x
	return *new(T) // the zero
}

var text = `never closed
func hidden() {}
