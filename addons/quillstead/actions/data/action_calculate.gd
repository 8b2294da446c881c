extends SCExpressionAction
## Work out a formula and keep the answer in a variable, for example speed * 2 + boost, clamp(health - damage, 0,
## 100) or (target - here).normalized() * speed.
