#!/usr/bin/python3
"""Writes tiny correctors in the form of the real one. usage: write-models.py FOLDER

The vocabulary has every byte, a few words, and formatted forms that no text is ever cut into. The encoder maps
words to their formatted forms, one row a token, in 8-bit weights; the decoder reads the row at which it has
arrived, and ends behind the last one. In FOLDER: "good", and models with one fault each, named after it.
"""
import json
import pathlib
import sys

import numpy
import onnx
from onnx import TensorProto, helper, numpy_helper

FORMATTED = {"привет": "Привет,", " мир": " мир!", " как": " Как", " дела": " дела?", "нет": "Совсем"}
CONTROL = ["<pad>", "<s>", "</s>", "<unk>"]
LONGEST = 1024  # rows behind the sentence that say "end"


def characters():
    visible = [*range(0x21, 0x7F), *range(0xA1, 0xAD), *range(0xAE, 0x100)]
    table, following = {}, 0x100
    for byte in range(256):
        if byte in visible:
            table[byte] = chr(byte)
        else:
            table[byte] = chr(following)
            following += 1
    return table


BYTES = characters()


def written(text):
    return "".join(BYTES[byte] for byte in text.encode())


def vocabulary():
    """Tokens by number, and the merges that lead to each word from its left."""
    tokens, merges = CONTROL + list(BYTES.values()), []
    for word in FORMATTED:
        form = written(word)
        for end in range(2, len(form) + 1):
            if form[:end] not in tokens:
                tokens.append(form[:end])
                merges.append(f"{form[:end - 1]} {form[end - 1]}")
    tokens += [written(word) for word in FORMATTED.values()]
    return {token: number for number, token in enumerate(tokens)}, merges


def table(tokens):
    """Row i: what is written for token i."""
    rows = numpy.zeros((len(tokens), len(tokens)), dtype=numpy.uint8)
    for number in tokens.values():
        rows[number, number] = 1
    for word, formatted in FORMATTED.items():
        number = tokens[written(word)]
        rows[number] = 0
        rows[number, tokens[written(formatted)]] = 1
    return rows


def tensor(name, array):
    return numpy_helper.from_array(numpy.asarray(array), name)


def value(name, kind, shape):
    return helper.make_tensor_value_info(name, kind, shape)


def save(path, nodes, inputs, outputs, constants):
    graph = helper.make_graph(nodes, "tiny", inputs, outputs, constants)
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)])
    model.ir_version = 7
    onnx.checker.check_model(model)
    onnx.save(model, str(path))


def encoder(path, tokens):
    size = len(tokens)
    nodes = [
        helper.make_node("DequantizeLinear", ["weights", "scale", "zero"], ["table"]),
        helper.make_node("Gather", ["table", "input_ids"], ["rows"]),
        helper.make_node("Cast", ["attention_mask"], ["seen"], to=TensorProto.FLOAT),
        helper.make_node("Unsqueeze", ["seen", "last"], ["column"]),
        helper.make_node("Mul", ["rows", "column"], ["last_hidden_state"]),
    ]
    save(path, nodes,
         [value("input_ids", TensorProto.INT64, ["batch", "length"]),
          value("attention_mask", TensorProto.INT64, ["batch", "length"])],
         [value("last_hidden_state", TensorProto.FLOAT, ["batch", "length", size])],
         [tensor("weights", table(tokens)), tensor("scale", numpy.float32(1)), tensor("zero", numpy.uint8(0)),
          tensor("last", numpy.array([2], dtype=numpy.int64))])


def decoder(path, tokens, end="</s>", hidden="encoder_hidden_states", answer=TensorProto.FLOAT):
    size = len(tokens)
    ending = numpy.zeros((1, LONGEST, size), dtype=numpy.float32)
    ending[:, :, tokens[end]] = 1
    nodes = [
        helper.make_node("Cast", ["encoder_attention_mask"], ["seen"], to=TensorProto.FLOAT),
        helper.make_node("Unsqueeze", ["seen", "last"], ["column"]),
        helper.make_node("Mul", [hidden, "column"], ["rows"]),
        helper.make_node("Concat", ["rows", "ending"], ["all"], axis=1),
        helper.make_node("Shape", ["input_ids"], ["shape"]),
        helper.make_node("Gather", ["shape", "one"], ["written"]),
        helper.make_node("Slice", ["all", "nothing", "written", "one"], ["scores"]),
        helper.make_node("Cast", ["scores"], ["logits"], to=answer),
    ]
    save(path, nodes,
         [value("input_ids", TensorProto.INT64, ["batch", "written"]),
          value("encoder_attention_mask", TensorProto.INT64, ["batch", "length"]),
          value(hidden, TensorProto.FLOAT, ["batch", "length", size])],
         [value("logits", answer, ["batch", "written", size])],
         [tensor("ending", ending), tensor("last", numpy.array([2], dtype=numpy.int64)),
          tensor("one", numpy.array([1], dtype=numpy.int64)), tensor("nothing", numpy.array([0], dtype=numpy.int64))])


def folder(root, name):
    tokens, merges = vocabulary()
    path = root / name
    path.mkdir(parents=True, exist_ok=True)
    (path / "vocab.json").write_text(json.dumps(tokens, ensure_ascii=name == "good"))
    (path / "merges.txt").write_text("#version: 0.2\n" + "\n".join(merges) + "\n")
    encoder(path / "encoder_model_quantized.onnx", tokens)
    decoder(path / "decoder_model_quantized.onnx", tokens)
    return path, tokens


def main(root):
    folder(root, "good")
    path, tokens = folder(root, "another-kind")
    decoder(path / "decoder_model_quantized.onnx", tokens, hidden="past_key_values")
    path, tokens = folder(root, "other-numbers")
    decoder(path / "decoder_model_quantized.onnx", tokens, answer=TensorProto.INT64)
    path, tokens = folder(root, "no-end")
    del tokens["</s>"]
    (path / "vocab.json").write_text(json.dumps(tokens))
    path, _ = folder(root, "bad-merges")
    (path / "merges.txt").write_text("a b c\n")
    path, _ = folder(root, "no-decoder")
    (path / "decoder_model_quantized.onnx").unlink()
    path, _ = folder(root, "truncated")
    encoded = (path / "encoder_model_quantized.onnx").read_bytes()
    (path / "encoder_model_quantized.onnx").write_bytes(encoded[:len(encoded) // 2])


main(pathlib.Path(sys.argv[1]))
