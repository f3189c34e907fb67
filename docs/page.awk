# Joins the code blocks of a page in one language: awk -v language=cpp -v output=FILE -f page.awk PAGE.
# Compiler errors refer to the lines of the page.
$0 == "```" language { inside = 1; if (language == "cpp") printf "#line %d \"%s\"\n", NR + 1, FILENAME > output; next }
$0 == "```" { inside = 0 }
inside { print > output }
