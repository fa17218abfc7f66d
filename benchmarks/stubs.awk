# From what `nm` lists of a library: C code that defines its functions as traps and its data as zeros, so that a program
# can be linked without it and ends at the first use. Virtual tables and type infos are weak there, and count where the
# class has a function in the library.
$2 == "T" {
    print "void " $3 "(void) { __builtin_trap(); }"
    if (match($3, /^_ZNK?[0-9]+[A-Za-z]+/))
        classes[substr($3, 4 + ($3 ~ /^_ZNK/), RLENGTH - 3 - ($3 ~ /^_ZNK/))]
}
$2 ~ /[BDR]/ { print "char " $3 "[1024];" }
$2 == "V" && $3 ~ /^_ZT[VI]/ { tables[$3] }
END {
    for (table in tables)
        if (substr(table, 5) in classes)
            print "char " table "[1024];"
}
