extends SCFormatTimeAction
## Write a number of seconds the way a clock shows it, into a String variable, such as 1:03.4 for a stage time,
## 0:58.90 for a lap, 12:05 for a round timer or +0.6 for a gap.
