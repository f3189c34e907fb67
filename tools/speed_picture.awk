# Draws an SVG picture of speed by size from the rows "size, N KiB NAME to UTF-8" of a file that zrqar_bench has
# written: awk -f speed_picture.awk FILE

BEGIN {
  FS = ";"
  width = 720; height = 420; left = 70; right = 150; top = 40; bottom = 50
  split("#0072b2 #d55e00 #009e73 #cc79a7 #56b4e9 #e69f00", colours, " ")
  log2 = log(2); log10 = log(10)
}

/^size, / {
  split($1, words, " ")
  if (!(words[4] in colour)) { names[++count] = words[4]; colour[words[4]] = colours[count] }
  x = log($3) / log2; y = log($4) / log10
  key = words[4] SUBSEP $2
  lines[key] = lines[key] " " x "," y
  if (!most_x || x > most_x) most_x = x
  if (!least_x || x < least_x) least_x = x
  if (!most_y || y > most_y) most_y = y
  if (!least_y || y < least_y) least_y = y
}

function across(x) { return left + (x - least_x) / (most_x - least_x) * (width - left - right) }
function down(y) { return height - bottom - (y - low) / (high - low) * (height - top - bottom) }
function text(x, y, anchor, words) {
  printf "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">%s</text>\n", x, y, anchor, words
}
function rule(x1, y1, x2, y2, style) {
  printf "<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" %s/>\n", x1, y1, x2, y2, style
}
function size_name(bytes) { return bytes < 1048576 ? bytes / 1024 " KiB" : bytes / 1048576 " MiB" }

END {
  if (!count) { print "speed_picture.awk: there are no rows to draw" > "/dev/stderr"; exit 1 }
  low = int(least_y); high = int(most_y) + 1
  printf "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" font-family=\"sans-serif\" font-size=\"12\">\n",
    width, height
  print "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>"
  text(left, 20, "start", "Code page to UTF-8, MB/s of input, by size of the content: this library, and ICU (dashed)")
  for (y = low; y <= high; ++y) {
    rule(left, down(y), width - right, down(y), "stroke=\"#ddd\"")
    text(left - 8, down(y) + 4, "end", 10 ^ y)
  }
  for (x = least_x; x <= most_x + 0.01; x += 2) {
    rule(across(x), top, across(x), height - bottom, "stroke=\"#eee\"")
    text(across(x), height - bottom + 18, "middle", size_name(2 ^ x))
  }
  for (key in lines) {
    split(key, parts, SUBSEP)
    points = ""
    n = split(lines[key], pairs, " ")
    for (i = 1; i <= n; ++i) { split(pairs[i], at, ","); points = points sprintf("%.1f,%.1f ", across(at[1]), down(at[2])) }
    printf "<polyline points=\"%s\" fill=\"none\" stroke=\"%s\" stroke-width=\"2\"%s/>\n", points, colour[parts[1]],
      parts[2] == "ours" ? "" : " stroke-dasharray=\"5 4\""
  }
  for (i = 1; i <= count; ++i) {
    rule(width - right + 12, top + 20 * i, width - right + 34, top + 20 * i, "stroke-width=\"2\" stroke=\"" colours[i] "\"")
    text(width - right + 40, top + 20 * i + 4, "start", names[i])
  }
  print "</svg>"
}
