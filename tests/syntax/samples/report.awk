#!/usr/bin/awk -f
# Sums a table. "Quotes" mean nothing here.
BEGIN {
    FS = "[ \t]+"; OFS = "\t"
    limit = 1000000; mask = 0xFF; small = 1.5e-3
    text = "the \"first\" line\n\/ \052"
}

/^#/ || NF == 0 { next }
/^[a-z]+"/ { quoted++ }
$1 ~ /^"?[A-Z]/ && $2 !~ /\/\*/ {
    total[$1] += $2 / 2
    count = NR / FNR / 2
}

!/x"y/ { other = $0 }

function max(a, b,   i) {
    if (a > b) return a; else return b
}

function words(line, parts) {
    n = split(line, parts, /[^a-z"]+/)
    for (i = 1; i <= n; i++) {
        if (parts[i] in seen) continue
        seen[parts[i]] = 1
        if (length(parts[i]) >= 10) break
    }
    while (n-- > 0) delete parts[n]
    do { n++ } while (n < 5)
    return n
}

NR == 1, NR == 5 {
    gsub(/"/, "'")
    sub(/(^ +| +$)/, "", $0)
    print toupper(substr($1, 1, 1)) substr($1, 2), NF
    next
}

$NF == "end" && match($0, /[0-9]+/) {
    number = substr($0, RSTART, RLENGTH) + 0
    printf "%5.2f %s\n", number ^ 2 % 7, ENVIRON["HOME"] > "/dev/stderr"
    getline line < ARGV[1]
    close(ARGV[1])
    print line | "sort -n"
}

{ lines[NR] = $0 }

END {
    for (key in total) {
        print key, total[key], max(total[key], 1)
        switch (key) {
        case "a": exit 1
        default: nextfile
        }
    }
    system("date"); fflush()
    x = y ? -1 : +1; z = !x && a ~ b
    print "never closed
    after = 1
}
