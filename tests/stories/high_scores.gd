extends Story
## A table of best scores in a variable: who gets into it and where, and how it reads.


func test_an_arcade_keeps_its_three_best() -> void:
	var owner := start(machine([
		state("Play", [], {"game_over": "Ask"}),
		state("Ask", [_table(SCHighScoreTableAction.WOULD_ENTER, {"keep": 3, "made_it_event": &"good", "missed_event": &"bad"})], {"good": "Enter",
				"bad": "Play"}),
		state("Enter", [_table(SCHighScoreTableAction.ENTER, {"keep": 3, "player_name_variable": &"who"})], {"FINISHED": "Show"}),
		state("Show", [_table(SCHighScoreTableAction.WRITE_OUT, {"store_text_in": &"text"})], {"FINISHED": "Play"}),
	], {"variables": {"points": 0, "who": "", "place": -1, "text": ""}}))
	for row: Array in [["Ann", 100, 1], ["Bob", 300, 1], ["Cid", 200, 2], ["Ann", 100, 0], ["Dan", 200, 3], ["Ann", 301, 1], ["Eve", 5, 0]]:
		owner.set_value(&"who", row[0])
		owner.set_value(&"points", row[1])
		owner.send_event(&"game_over")
		expect_values(owner, {"place": row[2]}, str(row))
		expect_state(owner, "Play")
	expect_values(owner, {"text": "1.  Ann   301\n2.  Bob   300\n3.  Cid   200"})


func test_where_a_score_goes() -> void:
	var t := SCHighScoreTableAction
	# Best Is, keep, the scores before, the score, the place, and the scores after.
	for row: Array in [
		[t.LARGEST, 3, [], 5, 1, [5]], [t.LARGEST, 3, [9, 5], 5, 3, [9, 5, 5]], [t.LARGEST, 3, [9, 5, 2], 2, 0, [9, 5, 2]],
		[t.LARGEST, 3, [9, 5, 2], 5, 3, [9, 5, 5]], [t.LARGEST, 3, [9, 5, 2], 10, 1, [10, 9, 5]], [t.LARGEST, 3, [9, 5, 2], -1, 0, [9, 5, 2]],
		[t.SMALLEST, 3, [2, 5, 9], 9, 0, [2, 5, 9]], [t.SMALLEST, 3, [2, 5, 9], 5, 3, [2, 5, 5]], [t.SMALLEST, 3, [2, 5], 1.5, 1, [1.5, 2, 5]],
		[t.LARGEST, 0, [], 5, 1, [5]], [t.LARGEST, 0, [4], 5, 1, [5]], [t.LARGEST, -7, [5], 5, 0, [5]], [t.LARGEST, 2, [9, 8, 7, 6], 7, 0, [9, 8, 7, 6]],
		[t.LARGEST, 2, [9, 8, 7, 6], 10, 1, [10, 9]],
	]:
		for operation: int in [t.ENTER, t.WOULD_ENTER]:
			var before := _rows(row[2])
			var held := results_of(_table(operation, {"best_is": row[0], "keep": row[1], "score": row[3], "score_variable": &"", "player_name": "new"}),
					{"scores": before, "place": -1})
			expect_equal(held[&"place"], row[4], str(row))
			expect_equal(_scores(held[&"scores"]), _floats(row[2] if operation == t.WOULD_ENTER else row[5]), str(row))
			expect_equal(_scores(before), _floats(row[2]), "the list that was handed over")
			if operation == t.ENTER and row[4] > 0:
				expect_equal(held[&"scores"][row[4] - 1], {"name": "new", "score": float(row[3])}, str(row))


func test_what_is_no_row_is_cleaned_away() -> void:
	var t := SCHighScoreTableAction
	var typed: Array[Dictionary] = [{"name": "Bob", "score": 9}]
	var numbers: Array[int] = [1]
	for row: Array in [
		["nothing", [5.0]], [null, [5.0]], [7, [5.0]], [numbers, [5.0]], [[1, {"name": "x"}, {"score": 3}, {"name": "Bob", "score": 9, "level": 2}, null],
		[9, 5.0]],
		[typed, [9, 5.0]], [[{&"name": "Bob", &"score": 9}], [9, 5.0]], [[{"name": "Bob", "score": "none"}], [5.0, "none"]],
	]:
		var settings := {"score": 5.0, "score_variable": &"", "store_place_in": &""}
		var owner := play(_table(t.ENTER, settings), {"FINISHED": "Done"}, {"variables": {"scores": row[0]}})
		expect_equal(_scores(owner.get_value(&"scores")), row[1], str(row[0]))
		owner.free()
	expect_equal(results_of(_table(t.ENTER, {"score_variable": &""}))[&"scores"].size(), 1, "made for you")
	var kept: Array = results_of(_table(t.ENTER, {"score": 1.0, "score_variable": &""}), {"scores": typed})[&"scores"]
	expect_equal([kept.get_typed_builtin(), kept.size()], [TYPE_DICTIONARY, 2])
	expect_equal(results_of(_table(t.CLEAR), {"scores": typed})[&"scores"], [])
	expect_equal(results_of(_table(t.CLEAR))[&"scores"], [])
	expect_equal(typed.size(), 1, "the list that was handed over")


func test_how_it_reads() -> void:
	var rows := [{"name": "{score}", "score": 12500}, {"name": "Bob {place}{_}", "score": 7.25}, {"name": &"{coins}", "score": "{name}"}]
	for row: Array in [
		[rows, {}, "1.  {score}   12500\n2.  Bob {place}{_}   7.25\n3.  {coins}   {name}"],
		[rows, {"line": "{score:,} {name}{place}{who}"}, "12,500 {score}1{who}\n7.25 Bob {place}{_}2{who}\n{name} {coins}3{who}"],
		[[], {}, "No scores yet"], ["none", {"when_empty": "-"}, "-"], [null, {"when_empty": ""}, ""], [[5, {"name": 1}], {}, "No scores yet"],
		[[{"name": "A", "score": 10.0}, {"name": "", "score": null}], {}, "1.  A   10\n2.     "],
	]:
		expect_equal(result_of(_table(SCHighScoreTableAction.WRITE_OUT, {"store_text_in": &"answer"}.merged(row[1])), {"scores": row[0], "coins": 3}),
				row[2], str(row))


func test_a_table_out_of_a_saved_file_reads_as_before() -> void:
	var table := [{"name": "Ann", "score": 10.0}, {"name": "Bob", "score": 9.5}]
	var saved: Variant = JSON.parse_string(JSON.stringify(table))
	expect_equal(result_of(_table(SCHighScoreTableAction.WRITE_OUT, {"store_text_in": &"answer"}), {"scores": saved}), "1.  Ann   10\n2.  Bob   9.5")
	expect_equal(results_of(_table(SCHighScoreTableAction.ENTER, {"score": 10.0, "score_variable": &""}), {"scores": saved, "place": 0})[&"place"], 2)


func test_what_is_told() -> void:
	var t := SCHighScoreTableAction
	expect_warns(_table(t.WRITE_OUT),
			"High Score Table on Machine: Write Out has nowhere to put the text, so it was lost. Pick a variable under Store Text In.")
	expect_warns(_table(t.ENTER, {"table_variable": &""}), "no variable is picked, so there is no table to work with. Pick one under Table Variable.")
	for score: float in [NAN, INF, -INF]:
		var owner := play(_table(t.ENTER, {"score": score, "score_variable": &"", "made_it_event": &"in", "missed_event": &"out"}), {"in": "In", "out": "Out"},
				{"variables": {"scores": [], "place": 4}})
		expect_state(owner, "Out")
		expect_values(owner, {"scores": [], "place": 0})
		expect_warning("Score holds a number that is none or is endless")
	expect_warns(_table(t.ENTER, {"score_variable": &"", "best_is_variable": &"best"}), "Best Is", {"variables": {"best": 9, "place": 0}})


func test_an_event_that_leaves_the_state_is_the_last_that_is_done() -> void:
	for operation: int in [SCHighScoreTableAction.ENTER, SCHighScoreTableAction.WOULD_ENTER]:
		var owner := play([_table(operation, {"made_it_event": &"in"}), act("after")], {"in": "In", "FINISHED": "Done"},
				{"variables": {"points": 3, "scores": [], "place": -1}})
		expect_state(owner, "In")
		expect_values(owner, {"place": 1})
		expect_events(owner, ["in"])


func test_random_runs_agree_with_a_sorted_list() -> void:
	for draw: int in seeds(4100, 20, 400):
		seed(draw)
		var smallest := randi() % 2 == 1
		var keep := randi_range(1, 6)
		var scores: Array = []
		var action := _table(SCHighScoreTableAction.ENTER, {"best_is": int(smallest), "keep": keep})
		var owner := start(machine([state("Play", [], {"over": "Enter"}), state("Enter", [action], {"FINISHED": "Play"})],
				{"variables": {"points": 0.0, "place": -1, "scores": []}}))
		for run in 30:
			var score := randi_range(0, 12) / 2.0
			var better := scores.filter(func(other: float) -> bool: return other <= score if smallest else other >= score).size()
			owner.set_value(&"points", score)
			owner.send_event(&"over")
			scores.append(score)
			scores.sort()
			if not smallest:
				scores.reverse()
			scores.resize(mini(scores.size(), keep))
			expect_equal(_scores(owner.get_value(&"scores")), scores, "seed %d, run %d" % [draw, run])
			expect_values(owner, {"place": better + 1 if better < keep else 0}, "seed %d, run %d" % [draw, run])
		owner.free()


func test_what_shows_when_and_the_line() -> void:
	var t := SCHighScoreTableAction
	var action := kind(SCHighScoreTableAction)
	for row: Array in [
		[t.ENTER, ["best_is", "keep", "score", "player_name", "store_place_in", "made_it_event", "missed_event"], ["store_text_in", "line", "when_empty"]],
		[t.WOULD_ENTER, ["best_is", "keep", "score", "store_place_in", "made_it_event", "missed_event"], ["player_name", "store_text_in", "line",
		"when_empty"]],
		[t.WRITE_OUT, ["store_text_in", "line", "when_empty"], ["best_is", "keep", "score", "player_name", "store_place_in", "made_it_event", "missed_event"]],
		[t.CLEAR, ["table_variable"], ["best_is", "keep", "score", "player_name", "store_place_in", "made_it_event", "missed_event", "store_text_in",
		"line", "when_empty"]],
	]:
		action.operation = row[0]
		expect_shown(action, row[1])
		expect_hidden(action, row[2])
	expect_lines(SCHighScoreTableAction, {
		"Enter 0 for no name into scores": {}, "Enter [points] for [who] into scores": {"score_variable": &"points", "player_name_variable": &"who"},
		"Would 12.5 get into best?": {"operation": t.WOULD_ENTER, "score": 12.5, "table_variable": &"best"}, "Empty scores": {"operation": t.CLEAR},
		"Write out scores into (pick one)": {"operation": t.WRITE_OUT},
	})


func _table(operation: int, settings: Dictionary = {}) -> SCHighScoreTableAction:
	var usual := {"operation": operation}
	if operation < SCHighScoreTableAction.WRITE_OUT:
		usual.merge({"score_variable": &"points", "store_place_in": &"place"})
	return kind(SCHighScoreTableAction, usual.merged(settings, true))


func _rows(scores: Array) -> Array:
	return scores.map(func(score: float) -> Dictionary: return {"name": "old", "score": score})


func _scores(rows: Array) -> Array:
	return rows.map(func(row: Dictionary) -> Variant: return row["score"])


func _floats(numbers: Array) -> Array:
	return numbers.map(func(number: float) -> float: return number)
