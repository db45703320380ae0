#!/usr/bin/env Rscript
# Reads a survey. "Quotes" mean nothing here.
library(stats)
suppressPackageStartupMessages(require("utils"))

limit <- 1000000L; mask <- 0xFF; small <- 1.5e-3; wave <- 2i
path <- r"(C:\new\survey.csv)"
text <- "the \"first\"\t\u00e4 one\n"
note <- 'it\'s # no comment'
long <- "over
two lines"

#' The mean of a column
summarise <- function(data, column = "age", na.rm = TRUE, ...) {
  if (!is.data.frame(data) || nrow(data) == 0) {
    stop("no data: ", deparse(substitute(data)))
  } else if (is.null(data[[column]])) {
    return(NULL)
  }
  values <- data[[column]]
  values[is.na(values)] <- NA_real_
  for (i in seq_along(values)) {
    if (values[i] < 0 | values[i] %in% c(99, 999)) next
    if (i > 10 && i != 20) break
  }
  total <- 0
  repeat { total <- total + 1; if (total >= 5) break }
  while (total > 0) total <- total %/% 2
  list(mean = mean(values, na.rm = na.rm), sd = sd(values), n = length(values))
}

people <- data.frame(
  name = c("anna", 'ben'),
  age = c(31, -1),
  `home town` = factor(c("x", "y")),
  stringsAsFactors = FALSE
)

ages <- sapply(people$age, function(x) ifelse(x < 0, NA, x))
add <- \(x, y = 2) x + y^2 * -1
result <- people |> subset(age > 18) |> transform(old = age %% 2 == 0)
model <- lm(age ~ name + I(age^2), data = people)
print(paste0("mean: ", round(mean(ages, na.rm = T), 2)))
x[["key"]] <<- Inf; y <- -Inf; z <- NaN
stats::quantile(ages, probs = c(0.25, .5))
person <- new("Person", name = "x"); person@name
switch("b", a = "first", b = { "second" }, stop("none"))
tryCatch(source("missing.R"), error = function(e) message(conditionMessage(e)), finally = invisible())
matrix(1:6, nrow = 2) %*% t(matrix(1:6, nrow = 2))
f <- as.factor(letters[1:3]); levels(f)
setwd("/tmp"); out <- try(log(-1), silent = TRUE)
open <- "never closed
hidden <- TRUE
