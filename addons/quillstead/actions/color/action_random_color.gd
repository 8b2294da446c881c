extends SCRandomColorAction
## Put a random colour into a Color variable. The next balloon, a firework, the shirts of a crowd.
