extends Story
## What would end the engine is played in one of its own.


func test_operations_of_every_kind_without_a_machine() -> void:
	expect_survives("res://tests/survival/operations.gd", ["Parameter \"p_machine\" is null.", "takes a SCMachineBase and was given a Window."])


func test_nodes_that_have_been_freed() -> void:
	expect_survives("res://tests/survival/freed_nodes.gd", [
		"Parameter \"p_machine\" is null.", "Parameter \"p_node\" is null.", "Argument 1 of position_of takes a Node and was given a String.",
		"Argument 1 of set_target takes a Node and was given a String.",
	])


func test_nothing_is_printed_where_nothing_is_wrong() -> void:
	expect_survives("res://tests/survival/quiet.gd")
